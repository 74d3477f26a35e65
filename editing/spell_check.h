#pragma once
// "Spell Check Table": every word of the cells in the rows shown and the data columns shown
// is looked up in the dictionary; each unknown one is shown in its cell with suggestions and
// the user decides. Replacements go through the change frame; words added to the dictionary
// are kept in the personal word list.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace quirnel {

struct ToolContext;

enum class SpellAction
{
    Replace,    ///< this occurrence by `replacement`
    ReplaceAll, ///< every occurrence in the table by `replacement`
    Ignore,     ///< this occurrence
    IgnoreAll,  ///< every occurrence, for the rest of this check
    AddToDictionary,
};

/// One unknown word, as the dialog shows it; the dialog sets `action` and `replacement`.
struct SpellCheckRequest
{
    std::string title;
    int row = -1;      ///< storage index
    int column = -1;   ///< data column
    int rowNumber = 0; ///< 1-based, as shown
    std::string columnName;
    std::string cellText;      ///< UTF-8
    std::size_t wordStart = 0; ///< bytes into cellText
    std::size_t wordLength = 0;
    std::string word;
    std::vector<std::string> suggestions;
    SpellAction action = SpellAction::Ignore;
    /// The first suggestion, or the word itself when there is none.
    std::string replacement;
};

/// A word of a text: byte offset and length in the UTF-8 text.
struct WordSpan
{
    std::size_t start = 0;
    std::size_t length = 0;
};

/// The words worth checking: runs of letters, with apostrophes inside them ("don't"). Runs
/// that hold digits or underscores ("3rd", "file_name") and parts of e-mail addresses are
/// codes, not words, and are left out.
std::vector<WordSpan> FindWords(std::string_view text);

void SpellCheckTableCommand(ToolContext& context);

} // namespace quirnel
