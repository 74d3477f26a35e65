#pragma once
// The command-line companion as a function, so that tests run it in-process: dump-json, check
// and normalize over the very reader and writer the editor uses.

#include <string>
#include <string_view>
#include <vector>

namespace quirnel {

class TableDocument;

/// Runs one command line (without the program name). Returns the exit code: 0 fine, 1
/// warnings found by "check", 2 usage errors and load or save failures (the message goes to
/// `err`). "normalize" in place keeps backups as the editor's save does, as many as the
/// editor's preferences file says.
int RunCsvTool(const std::vector<std::string>& args, std::string& out, std::string& err);

/// The loaded document as JSON: ok, error, separator, newline, codePage, columns, rows and
/// warnings. Text is UTF-8; bytes of 8-bit cells that are not UTF-8 are written as \u00XX.
std::string DocumentJson(const TableDocument& document);

/// A JSON string literal of the text, invalid UTF-8 bytes as \u00XX of the byte.
std::string JsonString(std::string_view text);

} // namespace quirnel
