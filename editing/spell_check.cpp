#include "editing/spell_check.h"

#include "app/command_ids.h"
#include "app/command_table.h"
#include "document/table_document.h"
#include "editing/change_frame.h"
#include "editing/tool_context.h"
#include "editing/tool_preconditions.h"
#include "ostrand/core/string.h"
#include "ostrand/core/user_interface.h"
#include "ostrand/spell/personal_word_list.h"
#include "ostrand/spell/spell_dictionary.h"
#include "view/table_control.h"

#include <algorithm>
#include <map>
#include <set>

namespace quirnel {

namespace {

enum class CharClass
{
    Letter,
    Apostrophe,
    Code, ///< digits and underscores: the run is no word
    Other,
};

/// Decodes one code point at `at` and moves past it; a broken sequence counts as one byte.
char32_t NextCodePoint(std::string_view text, std::size_t& at)
{
    const unsigned char lead = static_cast<unsigned char>(text[at]);
    if (lead < 0x80) {
        ++at;
        return lead;
    }
    const std::size_t extra = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : lead >= 0xC0 ? 1 : 0;
    if (extra == 0 || at + extra >= text.size()) {
        ++at;
        return 0xFFFD;
    }
    char32_t value = lead & (0x3F >> extra);
    for (std::size_t i = 1; i <= extra; ++i) {
        const unsigned char next = static_cast<unsigned char>(text[at + i]);
        if ((next & 0xC0) != 0x80) {
            ++at;
            return 0xFFFD;
        }
        value = (value << 6) | (next & 0x3F);
    }
    at += extra + 1;
    return value;
}

CharClass Classify(char32_t c)
{
    if ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'))
        return CharClass::Letter;
    if (c == '\'' || c == 0x2019)
        return CharClass::Apostrophe;
    if ((c >= '0' && c <= '9') || c == '_')
        return CharClass::Code;
    if (c < 0xC0 || c == 0xD7 || c == 0xF7 || c == 0xFFFD)
        return CharClass::Other;
    // Punctuation and symbol blocks; everything else above Latin-1 is taken as letters.
    if ((c >= 0x2000 && c <= 0x2BFF) || (c >= 0x3000 && c <= 0x303F) ||
        (c >= 0xFE30 && c <= 0xFE4F) || (c >= 0xFF00 && c <= 0xFF20) || c >= 0x1F000)
        return CharClass::Other;
    return CharClass::Letter;
}

struct Run
{
    std::size_t start = 0;
    std::size_t end = 0;
    bool code = false;
};

std::string CellUtf8(const TableDocument& document, int row, int column)
{
    return ost::Utf16ToUtf8(document.CellTextWide(row, column));
}

/// The columns a user sees and can type words into.
std::vector<int> CheckedColumns(const TableControl& table)
{
    std::vector<int> columns;
    for (int c = 1; c < table.ColumnCount(); ++c)
        if (!table.Column(c).hidden && table.Column(c).kind == kColumnText)
            columns.push_back(c);
    return columns;
}

/// `text` with every whole-word occurrence of `word` replaced; `before` counts those that
/// start before `limit`.
std::string ReplaceWord(const std::string& text, std::string_view word,
                        std::string_view replacement, std::size_t limit, std::size_t& before)
{
    std::string result;
    std::size_t copied = 0;
    before = 0;
    for (const WordSpan& span : FindWords(text)) {
        if (std::string_view(text).substr(span.start, span.length) != word)
            continue;
        result.append(text, copied, span.start - copied);
        result.append(replacement);
        copied = span.start + span.length;
        if (span.start < limit)
            ++before;
    }
    if (copied == 0 && result.empty())
        return text;
    result.append(text, copied, std::string::npos);
    return result;
}

class SpellWalk
{
public:
    SpellWalk(ToolContext& context, ost::SpellDictionary& dictionary,
              ost::PersonalWordList& personal, std::string title)
        : m_context(context), m_document(context.document), m_table(context.document.Table()),
          m_dictionary(dictionary), m_personal(personal), m_title(std::move(title)),
          m_columns(CheckedColumns(m_table))
    {
        for (int p = 0; p < m_table.VisibleRowCount(); ++p)
            m_rows.push_back(m_table.RowAtDisplayPosition(p));
    }

    /// False when the user stopped.
    bool Run()
    {
        for (std::size_t i = 0; i < m_rows.size(); ++i)
            for (int column : m_columns)
                if (!CheckCell(static_cast<int>(i), m_rows[i], column))
                    return false;
        return true;
    }

    int Flagged() const { return m_flagged; }

private:
    bool Known(const std::string& word)
    {
        return m_ignored.count(word) || m_personal.Contains(word) || m_dictionary.Knows(word);
    }

    bool CheckCell(int position, int row, int column)
    {
        std::string text = CellUtf8(m_document, row, column);
        std::size_t cursor = 0;
        for (;;) {
            std::vector<WordSpan> words = FindWords(std::string_view(text).substr(cursor));
            auto unknown = std::find_if(words.begin(), words.end(), [&](const WordSpan& span) {
                return !Known(text.substr(cursor + span.start, span.length));
            });
            if (unknown == words.end())
                return true;
            const std::size_t start = cursor + unknown->start;
            const std::string word = text.substr(start, unknown->length);
            ++m_flagged;
            // The grid shows the cell while the dialog asks about it.
            m_table.SetFocusCell(row, column);
            m_context.host.ShowFocusCell();

            SpellCheckRequest request;
            request.title = m_title;
            request.row = row;
            request.column = column;
            request.rowNumber = position + 1;
            request.columnName = m_table.ColumnNameUtf8(column);
            request.cellText = text;
            request.wordStart = start;
            request.wordLength = word.size();
            request.word = word;
            request.suggestions = m_dictionary.Suggest(word);
            request.replacement = request.suggestions.empty() ? word : request.suggestions.front();
            if (!m_context.dialogs.SpellCheck(request))
                return false;

            cursor = start + word.size();
            switch (request.action) {
            case SpellAction::Ignore:
                break;
            case SpellAction::IgnoreAll:
                m_ignored.insert(word);
                break;
            case SpellAction::AddToDictionary:
                // Known for the rest of this check even when the list cannot be written.
                m_personal.Add(word);
                m_dictionary.AddWord(word);
                break;
            case SpellAction::Replace:
                if (request.replacement != word) {
                    text.replace(start, word.size(), request.replacement);
                    ChangeFrame frame(m_context);
                    m_document.SetCellText16(row, column, ost::Utf8ToUtf16(text));
                    // Setting a cell's text tells no view; the frame's end then redraws.
                    m_table.Redraw();
                    frame.Done(m_table.DisplayPosition(row), row, column);
                    cursor = start + request.replacement.size();
                }
                break;
            case SpellAction::ReplaceAll:
                if (request.replacement != word) {
                    const std::size_t before =
                        ReplaceEverywhere(word, request.replacement, row, column, start);
                    text = CellUtf8(m_document, row, column);
                    // Each earlier occurrence in this cell moved the cursor by the difference.
                    cursor = start + before * request.replacement.size() - before * word.size() +
                             request.replacement.size();
                }
                break;
            }
        }
    }

    /// Replaces the word in every checked cell, in one change. Returns how many occurrences
    /// in the cell (row, column) started before `limit`.
    std::size_t ReplaceEverywhere(const std::string& word, const std::string& replacement,
                                  int currentRow, int currentColumn, std::size_t limit)
    {
        std::size_t currentBefore = 0;
        ChangeFrame frame(m_context);
        int firstPosition = -1;
        for (int row : m_rows) {
            for (int column : m_columns) {
                const std::string text = CellUtf8(m_document, row, column);
                const bool current = row == currentRow && column == currentColumn;
                std::size_t before = 0;
                std::string replaced =
                    ReplaceWord(text, word, replacement, current ? limit : 0, before);
                if (current)
                    currentBefore = before;
                if (replaced == text)
                    continue;
                m_document.SetCellText16(row, column, ost::Utf8ToUtf16(replaced));
                const int position = m_table.DisplayPosition(row);
                if (firstPosition < 0 || position < firstPosition)
                    firstPosition = position;
            }
        }
        if (firstPosition >= 0) {
            m_table.Redraw();
            frame.Done(firstPosition, currentRow, currentColumn);
        }
        return currentBefore;
    }

    ToolContext& m_context;
    TableDocument& m_document;
    TableControl& m_table;
    ost::SpellDictionary& m_dictionary;
    ost::PersonalWordList& m_personal;
    std::string m_title;
    std::vector<int> m_columns;
    std::vector<int> m_rows;
    std::set<std::string> m_ignored;
    int m_flagged = 0;
};

} // namespace

std::vector<WordSpan> FindWords(std::string_view text)
{
    // First the runs of word characters, then each run trimmed of its outer apostrophes.
    std::vector<Run> runs;
    std::size_t at = 0;
    bool inRun = false;
    while (at < text.size()) {
        const std::size_t here = at;
        const CharClass kind = Classify(NextCodePoint(text, at));
        if (kind == CharClass::Other) {
            inRun = false;
            continue;
        }
        if (!inRun) {
            runs.push_back({here, at, false});
            inRun = true;
        }
        runs.back().end = at;
        if (kind == CharClass::Code)
            runs.back().code = true;
    }
    std::vector<WordSpan> words;
    for (const Run& run : runs) {
        if (run.code)
            continue;
        // Parts of e-mail addresses and web addresses are names, not words.
        const std::size_t chunkStart = text.find_last_of(" \t\r\n", run.start);
        const std::size_t chunkEnd = text.find_first_of(" \t\r\n", run.end);
        const std::string_view chunk =
            text.substr(chunkStart == std::string_view::npos ? 0 : chunkStart + 1,
                        (chunkEnd == std::string_view::npos ? text.size() : chunkEnd) -
                            (chunkStart == std::string_view::npos ? 0 : chunkStart + 1));
        if (chunk.find('@') != std::string_view::npos ||
            chunk.find("://") != std::string_view::npos)
            continue;
        std::size_t start = run.start;
        std::size_t end = run.end;
        while (start < end) {
            std::size_t next = start;
            if (Classify(NextCodePoint(text, next)) != CharClass::Apostrophe)
                break;
            start = next;
        }
        // Trailing apostrophes: step back over "'" (1 byte) or U+2019 (3 bytes).
        for (;;) {
            if (end > start && text[end - 1] == '\'') {
                --end;
                continue;
            }
            if (end >= start + 3 && text.substr(end - 3, 3) == "\xE2\x80\x99") {
                end -= 3;
                continue;
            }
            break;
        }
        if (end > start)
            words.push_back({start, end - start});
    }
    return words;
}

void SpellCheckTableCommand(ToolContext& context)
{
    const std::string title(CommandLabel(cmd::kSpellCheckTable));
    if (CheckToolPreconditions(context, kToolNeedsRows | kToolGoesOnAfterOpen, title,
                               CommandIconName(cmd::kSpellCheckTable)))
        return;
    context.host.CommitCellEdit();
    std::unique_ptr<ost::SpellDictionary> dictionary = context.host.OpenSpellDictionary();
    if (!dictionary) {
        context.ui.Message(title,
                           "No spelling dictionary is installed, so the table cannot be spell "
                           "checked.",
                           ost::MessageIcon::Error);
        return;
    }
    ost::PersonalWordList personal(context.host.PersonalWordListPath());
    SpellWalk walk(context, *dictionary, personal, title);
    if (!walk.Run())
        return;
    context.ui.Message(title,
                       walk.Flagged() == 0 ? "No spelling mistakes were found."
                                           : "The spell check is complete.",
                       ost::MessageIcon::Information);
}

} // namespace quirnel
