// Measures the editor's work on one CSV file and prints one "name value unit" line per figure.

#include "app/command_ids.h"
#include "document/csv_loader.h"
#include "document/csv_saver.h"
#include "document/file_system.h"
#include "document/table_document.h"
#include "editing/clipboard_rows.h"
#include "editing/column_commands.h"
#include "editing/export_html.h"
#include "editing/find_replace.h"
#include "editing/graph_command.h"
#include "editing/print_table.h"
#include "editing/row_commands.h"
#include "editing/row_filter.h"
#include "editing/scope_dialog.h"
#include "editing/spell_check.h"
#include "editing/tool_context.h"
#include "editing/trim_commands.h"
#include "ostrand/core/clipboard.h"
#include "ostrand/core/user_interface.h"
#include "ostrand/spell/spell_dictionary.h"

#include <chrono>
#include <clocale>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>
#include <sys/resource.h>
#include <unistd.h>
#include <vector>

namespace {

/// Nobody is watching: every box gets the same answer and nothing is cancelled. The loads
/// answer No and say what they were asked; the commands answer Yes, so each runs to its end.
class SilentUi : public ost::UserInterface
{
public:
    explicit SilentUi(int answer = ost::kButtonNo) : m_answer(answer) {}
    int MessageBox(const ost::MessageBoxRequest& request) override
    {
        if (m_answer == ost::kButtonNo)
            std::fprintf(stderr, "quirnel-bench: %s\n", request.text.c_str());
        return m_answer;
    }
    void Beep() override {}
    void BeginProgress(const std::string&) override {}
    bool UpdateProgress(double) override { return true; }
    void EndProgress() override {}

private:
    int m_answer;
};

class NoDialogs : public quirnel::EditingDialogs
{
public:
    bool JumpToRow(quirnel::JumpToRowRequest&) override { return false; }
    bool NewColumn(quirnel::NewColumnRequest&) override { return false; }
    bool DeleteColumn(quirnel::DeleteColumnRequest&) override { return false; }
    bool RenameColumn(quirnel::RenameColumnRequest&) override { return false; }
    bool CombineColumns(quirnel::CombineColumnsRequest&) override { return false; }
    bool SetEntireColumn(quirnel::SetEntireColumnRequest&) override { return false; }
    bool ShiftCells(quirnel::ShiftCellsRequest&) override { return false; }
    bool Scope(quirnel::ScopeRequest&) override { return false; }
    bool ExportHtml(quirnel::ExportHtmlRequest&) override { return false; }
    bool PrintOptions(quirnel::PrintOptionsRequest&) override { return false; }
    bool PrintSetup(quirnel::PrintJobRequest&) override { return false; }
    bool Search(quirnel::SearchRequest&) override { return false; }
    bool SearchColumn(quirnel::SearchColumnRequest&) override { return false; }
    bool GraphOptions(quirnel::GraphOptionsRequest&) override { return false; }
    bool SpellCheck(quirnel::SpellCheckRequest&) override { return false; }
};

/// The column dialogs answered as someone working on a whole column of the file would: a new
/// column after the current one, the current column deleted or filled with numbers, the next
/// column appended to the current one.
class ColumnChoices : public NoDialogs
{
public:
    bool NewColumn(quirnel::NewColumnRequest& request) override
    {
        request.name = "added";
        return true;
    }
    bool DeleteColumn(quirnel::DeleteColumnRequest&) override { return true; }
    bool SetEntireColumn(quirnel::SetEntireColumnRequest& request) override
    {
        request.fill = quirnel::ColumnFill::Numbers;
        request.startNumber = "1";
        request.scope = quirnel::FillScope::All;
        return true;
    }
    bool CombineColumns(quirnel::CombineColumnsRequest& request) override
    {
        request.source = request.target + 1;
        request.separator = " ";
        return true;
    }
};

class NoClipboard : public ost::Clipboard
{
public:
    bool Write(const std::vector<ost::ClipboardItem>&) override { return false; }
    std::optional<std::string> Read(std::string_view) override { return std::nullopt; }
};

/// A window with no editor open and no files to offer.
class IdleHost : public quirnel::EditingHost
{
public:
    void CommitCellEdit() override {}
    void SetBusy(bool) override {}
    void ShowFocusCell() override {}
    bool MultilineEditing() const override { return false; }
    void ReopenEditor() override {}
    void MarkModified() override {}
    bool RunNewFile() override { return false; }
    bool RunOpenFile() override { return false; }
    bool OpenWithDefaultProgram(const std::string&) override { return false; }
    std::unique_ptr<quirnel::HtmlViewer> CreateHtmlViewer() override { return nullptr; }
    void ShowCellMatch(int, int, int, int) override {}
    void EndMultilineEditing() override {}
    void ShowGraph(const quirnel::GraphChart&) override {}
    std::unique_ptr<ost::SpellDictionary> OpenSpellDictionary() override { return nullptr; }
    std::string PersonalWordListPath() override { return {}; }
};

/// The same sequence every run, so that shuffles compare between runs.
class FixedRandom : public quirnel::RandomSource
{
public:
    std::uint64_t Next() override { return ++m_next * 0x9E3779B97F4A7C15ull; }

private:
    std::uint64_t m_next = 0;
};

/// The machine's files, timing Close: that is where a save waits for the disk (fsync), which
/// is real I/O rather than our own work, so it is reported on its own line.
class TimedFileSystem : public quirnel::FileSystem
{
public:
    explicit TimedFileSystem(quirnel::FileSystem& real) : m_real(real) {}

    double CloseSeconds() const { return m_closeSeconds; }

    bool ReadWholeFile(const std::string& path, std::string& data, int& error) override
    {
        return m_real.ReadWholeFile(path, data, error);
    }
    bool Stat(const std::string& path, quirnel::FileInfo& info, int& error) override
    {
        return m_real.Stat(path, info, error);
    }
    bool CreateTempFile(const std::string& folder, std::string& path, Handle& handle,
                        int& error) override
    {
        return m_real.CreateTempFile(folder, path, handle, error);
    }
    bool Write(Handle handle, const char* data, std::size_t size, int& error) override
    {
        return m_real.Write(handle, data, size, error);
    }
    bool Close(Handle handle, int& error) override
    {
        const auto start = std::chrono::steady_clock::now();
        const bool closed = m_real.Close(handle, error);
        m_closeSeconds +=
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        return closed;
    }
    bool Rename(const std::string& from, const std::string& to, int& error) override
    {
        return m_real.Rename(from, to, error);
    }
    bool Copy(const std::string& from, const std::string& to, int& error) override
    {
        return m_real.Copy(from, to, error);
    }
    bool Remove(const std::string& path, int& error) override { return m_real.Remove(path, error); }
    bool CopyPermissions(const std::string& model, const std::string& path, int& error) override
    {
        return m_real.CopyPermissions(model, path, error);
    }
    bool CreateDirectory(const std::string& path, int& error) override
    {
        return m_real.CreateDirectory(path, error);
    }

private:
    quirnel::FileSystem& m_real;
    double m_closeSeconds = 0;
};

/// The process's peak resident memory so far, in megabytes (VmHWM).
double PeakResidentMb()
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.rfind("VmHWM:", 0) == 0)
            return std::strtod(line.c_str() + 6, nullptr) / 1024.0;
    return 0;
}

/// Processor time of this process (user and system), in seconds: on a busy machine it says
/// more about our own work than the wall clock.
double CpuSeconds()
{
    struct rusage usage
    {};
    ::getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
           static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

double SecondsSince(std::chrono::steady_clock::time_point start)
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// The first data column whose first cells all read as integers, else 1.
int IntegerColumn(const quirnel::TableDocument& document)
{
    for (int column = 1; column < document.ColumnCount(); ++column) {
        bool integers = document.RowCount() > 0;
        for (int row = 0; row < std::min(document.RowCount(), 100) && integers; ++row) {
            const std::string text =
                document.IsUnicode() ? std::string() : std::string(document.CellText8(row, column));
            integers = !text.empty() && text.find_first_not_of("-0123456789") == std::string::npos;
        }
        if (integers)
            return column;
    }
    return 1;
}

/// A document of its own with the file loaded, and everything a command needs around it:
/// every question answered Yes, rows deleted without asking, `dialogs` for the dialogs.
struct CommandBench
{
    explicit CommandBench(quirnel::EditingDialogs& answers) : dialogs(answers)
    {
        prefs.noConfirmDeleteRow = true;
    }
    bool Load(const std::string& path)
    {
        quirnel::FileFormat format;
        format.path = path;
        return quirnel::LoadCsvFile(document, format, "quirnel-bench");
    }

    SilentUi loadUi;
    quirnel::TableDocument document{loadUi};
    SilentUi ui{ost::kButtonYes};
    quirnel::EditingDialogs& dialogs;
    NoClipboard clipboard;
    IdleHost host;
    quirnel::EditingPreferences prefs;
    FixedRandom random;
    quirnel::EditingState state;
    quirnel::ToolContext context{document, ui, dialogs, clipboard, host, prefs, random, state};
};

/// Loads the file into a document of its own, lets `prepare` select rows, and times `command`
/// alone: each figure starts from the file as loaded, whatever the others did. `Dialogs`
/// answers the command's dialog.
template <class Dialogs = NoDialogs, class Prepare, class Command>
bool TimeRowCommand(const char* name, const std::string& path, Prepare prepare, Command command)
{
    Dialogs dialogs;
    CommandBench bench(dialogs);
    if (!bench.Load(path))
        return false;
    quirnel::ToolContext& context = bench.context;
    quirnel::TableDocument& document = bench.document;
    prepare(document.Table());
    const auto start = std::chrono::steady_clock::now();
    command(context);
    std::printf("%s %.3f s\n", name, SecondsSince(start));
    return true;
}

/// Trim Whitespace over the entire table with every option on, then the table written as an
/// HTML file; both on the file as loaded.
bool TimeTrimAndExport(const std::string& path)
{
    class WholeTable : public NoDialogs
    {
    public:
        bool Scope(quirnel::ScopeRequest& request) override
        {
            request.scope = quirnel::kScopeTable;
            for (quirnel::ScopeOption& option : request.options)
                option.checked = true;
            return true;
        }
    } dialogs;
    CommandBench bench(dialogs);
    if (!bench.Load(path))
        return false;
    quirnel::TableDocument& document = bench.document;
    const std::string target = (std::filesystem::temp_directory_path() /
                                ("quirnel-bench-" + std::to_string(::getpid()) + ".html"))
                                   .string();
    auto start = std::chrono::steady_clock::now();
    const quirnel::HtmlFileResult html = quirnel::WriteHtmlFile(document, target, 0);
    const double exportSeconds = SecondsSince(start);
    std::error_code error;
    std::filesystem::remove(target, error);
    if (!html.ok)
        return false;

    start = std::chrono::steady_clock::now();
    quirnel::TrimWhitespaceCommand(bench.context);
    std::printf("trim_s %.3f s\n", SecondsSince(start));
    std::printf("export_html_s %.3f s\n", exportSeconds);
    std::printf("export_html_mb %.1f MB\n", static_cast<double>(html.bytes) / 1e6);
    return true;
}

/// Copy Row(s) with every row of the file selected (both clipboard texts built), and Paste Row(s)
/// of the first 100,000 rows' tab-separated text, parsed and appended to the table as loaded.
bool TimeClipboardRows(const std::string& path)
{
    class HeldClipboard : public ost::Clipboard
    {
    public:
        bool Write(const std::vector<ost::ClipboardItem>& items) override
        {
            written = 0;
            for (const ost::ClipboardItem& item : items)
                written += item.data.size();
            return true;
        }
        std::optional<std::string> Read(std::string_view format) override
        {
            if (format == ost::kClipboardPlainText)
                return text;
            return std::nullopt;
        }
        std::string text;
        std::size_t written = 0;
    } clipboard;
    NoDialogs dialogs;
    CommandBench bench(dialogs);
    if (!bench.Load(path))
        return false;
    quirnel::TableDocument& document = bench.document;
    quirnel::ToolContext context{document,   bench.ui,    dialogs,      clipboard,
                                 bench.host, bench.prefs, bench.random, bench.state};
    quirnel::TableControl& table = document.Table();
    table.SelectAllRows();
    auto start = std::chrono::steady_clock::now();
    quirnel::CopyRowsCommand(context, false);
    std::printf("copy_rows_s %.3f s\n", SecondsSince(start));
    std::printf("copy_rows_mb %.1f MB\n", static_cast<double>(clipboard.written) / 1e6);
    table.DeselectAllRows();

    std::vector<int> first(static_cast<std::size_t>(std::min(100'000, table.RowCount())));
    for (std::size_t i = 0; i < first.size(); ++i)
        first[i] = static_cast<int>(i);
    clipboard.text = quirnel::BuildRowTexts(document, first, true).tabbed;
    // No current row: the rows go to the end without a question, and the names record matches.
    table.SetFocusCell(-1, -1);
    const int before = table.RowCount();
    start = std::chrono::steady_clock::now();
    quirnel::PasteRowsCommand(context);
    const double pasteSeconds = SecondsSince(start);
    if (table.RowCount() != before + static_cast<int>(first.size()))
        return false;
    std::printf("paste_rows_s %.3f s\n", pasteSeconds);
    return true;
}

/// Graph: daily totals of two amount columns over the date column, the data sets built from
/// the file as loaded. Columns are found by name ("date_iso", "amount", "price"), else the
/// 4th, 3rd and 8th.
bool TimeGraph(const std::string& path)
{
    class DailyTwoAmounts : public NoDialogs
    {
    public:
        bool GraphOptions(quirnel::GraphOptionsRequest& request) override
        {
            auto find = [&](const char* name, int fallback) {
                for (std::size_t i = 0; i < request.columns.size(); ++i)
                    if (request.columns[i] == name)
                        return static_cast<int>(i) + 1;
                return std::min(fallback, static_cast<int>(request.columns.size()));
            };
            request.dateColumn = find("date_iso", 4);
            request.amount1Used = true;
            request.amount1Column = find("amount", 3);
            request.amount2Used = true;
            request.amount2Column = find("price", 8);
            request.dateFormat = quirnel::kGraphDateAuto;
            request.division = quirnel::kDivisionDaily;
            return true;
        }
    } dialogs;
    CommandBench bench(dialogs);
    if (!bench.Load(path))
        return false;
    const auto start = std::chrono::steady_clock::now();
    quirnel::GraphCommand(bench.context);
    std::printf("graph_s %.3f s\n", SecondsSince(start));
    return true;
}

/// Selects every `step`-th row, starting at row 0, with the focus in the first of them.
void SelectEvery(quirnel::TableControl& table, int step)
{
    for (int row = 0; row < table.RowCount(); row += step)
        table.SetRowSelected(row, true);
    table.SetFocusCell(0, 1);
}

/// The row filter for a name in about 1% of M's rows, Find from the beginning for a number
/// only the last row holds, and Replace All of the date separator "/", which about 10% of
/// the cells hold; one after the other on the file as loaded (the filter is undone first).
bool TimeSearches(const std::string& path)
{
    class SearchChoices : public NoDialogs
    {
    public:
        bool Search(quirnel::SearchRequest& request) override
        {
            request.options = options;
            return true;
        }
        quirnel::SearchOptions options;
    } dialogs;
    CommandBench bench(dialogs);
    if (!bench.Load(path))
        return false;
    quirnel::ToolContext& context = bench.context;
    auto start = std::chrono::steady_clock::now();
    double cpu = CpuSeconds();
    quirnel::ApplyRowFilter(context, {true, u"suzuki", false, false});
    std::printf("filter_s %.3f s\n", SecondsSince(start));
    std::printf("filter_cpu_s %.3f s\n", CpuSeconds() - cpu);
    std::printf("filter_rows %d rows\n", bench.document.Table().VisibleRowCount());
    quirnel::ApplyRowFilter(context, {false, u"suzuki", false, false});

    dialogs.options.searchText = u"1606603";
    dialogs.options.direction = quirnel::SearchDirection::ForwardFromBeginning;
    start = std::chrono::steady_clock::now();
    cpu = CpuSeconds();
    quirnel::SearchTableCommand(context, quirnel::SearchMode::Find, false, quirnel::cmd::kFind);
    std::printf("find_s %.3f s\n", SecondsSince(start));
    std::printf("find_cpu_s %.3f s\n", CpuSeconds() - cpu);
    if (bench.document.Table().FocusRow() != bench.document.RowCount() - 1)
        std::fprintf(stderr, "quirnel-bench: find_s did not end on the last row\n");

    dialogs.options.searchText = u"/";
    dialogs.options.replaceText = u".";
    dialogs.options.replace = true;
    start = std::chrono::steady_clock::now();
    cpu = CpuSeconds();
    quirnel::SearchTableCommand(context, quirnel::SearchMode::FindReplace, false,
                                quirnel::cmd::kFindReplace);
    std::printf("replace_all_s %.3f s\n", SecondsSince(start));
    std::printf("replace_all_cpu_s %.3f s\n", CpuSeconds() - cpu);
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    std::setlocale(LC_ALL, "");
    if (argc != 2) {
        std::fputs("usage: quirnel-bench FILE\n", stderr);
        return 2;
    }
    std::error_code error;
    const auto size = std::filesystem::file_size(argv[1], error);
    if (error) {
        std::fprintf(stderr, "quirnel-bench: %s: %s\n", argv[1], error.message().c_str());
        return 2;
    }
    std::printf("file_mb %.1f MB\n", static_cast<double>(size) / 1e6);

    SilentUi ui;
    quirnel::TableDocument document(ui);
    TimedFileSystem files(quirnel::RealFileSystem());
    document.SetFileSystem(files);
    quirnel::FileFormat format;
    format.path = argv[1];
    auto start = std::chrono::steady_clock::now();
    double cpu = CpuSeconds();
    if (!quirnel::LoadCsvFile(document, format, "quirnel-bench"))
        return 2;
    std::printf("load_s %.3f s\n", SecondsSince(start));
    std::printf("load_cpu_s %.3f s\n", CpuSeconds() - cpu);
    std::printf("load_peak_rss_mb %.1f MB\n", PeakResidentMb());
    std::printf("rows %d rows\n", document.RowCount());

    const std::string target = (std::filesystem::temp_directory_path() /
                                ("quirnel-bench-" + std::to_string(::getpid()) + ".csv"))
                                   .string();
    document.SetBackupLevels(0);
    start = std::chrono::steady_clock::now();
    cpu = CpuSeconds();
    const bool saved = quirnel::SaveCsvFile(document, target);
    const double saveSeconds = SecondsSince(start);
    const double saveCpuSeconds = CpuSeconds() - cpu;
    std::filesystem::remove(target, error);
    if (!saved)
        return 2;
    std::printf("save_s %.3f s\n", saveSeconds);
    std::printf("save_cpu_s %.3f s\n", saveCpuSeconds);
    std::printf("save_fsync_s %.3f s\n", files.CloseSeconds());

    quirnel::TableControl& table = document.Table();
    const int numeric = IntegerColumn(document);
    table.SetColumnSortMethod(numeric, quirnel::kSortNumeric);
    start = std::chrono::steady_clock::now();
    table.SetSort(numeric, false);
    std::printf("sort_numeric_s %.3f s\n", SecondsSince(start));

    const int text = document.ColumnCount() > 7 ? 7 : document.ColumnCount() - 1;
    table.SetColumnSortMethod(text, quirnel::kSortTextNoCase);
    start = std::chrono::steady_clock::now();
    table.SetSort(text, true);
    std::printf("sort_text_s %.3f s\n", SecondsSince(start));

    // The whole process so far: the load, the save and both sorts of one loaded copy. The
    // figures below each load a copy of their own, one at a time.
    std::printf("peak_rss_mb %.1f MB\n", PeakResidentMb());
    // Only one loaded copy of the file at a time.
    document.Release();

    const std::string path = argv[1];
    auto every = [](int step) {
        return [step](quirnel::TableControl& t) { SelectEvery(t, step); };
    };
    auto focusOnly = [](quirnel::TableControl& t) { t.SetFocusCell(0, 1); };
    auto inColumn = [](int column) {
        return [column](quirnel::TableControl& t) { t.SetFocusCell(0, column); };
    };
    if (!TimeRowCommand("delete_rows_s", path, every(2), quirnel::DeleteRowsCommand) ||
        !TimeRowCommand("duplicate_rows_s", path, every(10), quirnel::DuplicateRowsCommand) ||
        !TimeRowCommand("dedup_s", path, focusOnly, quirnel::DeduplicateRowsCommand) ||
        !TimeRowCommand("shuffle_s", path, focusOnly, quirnel::ShuffleRowsCommand) ||
        !TimeRowCommand<ColumnChoices>("insert_column_s", path, inColumn(5),
                                       [](auto& c) { quirnel::NewColumnCommand(c, 1); }) ||
        !TimeRowCommand<ColumnChoices>("delete_column_s", path, inColumn(5),
                                       [](auto& c) { quirnel::DeleteColumnCommand(c); }) ||
        !TimeRowCommand<ColumnChoices>("set_column_s", path, inColumn(3),
                                       [](auto& c) { quirnel::SetEntireColumnCommand(c); }) ||
        !TimeRowCommand<ColumnChoices>("combine_columns_s", path, inColumn(6),
                                       [](auto& c) { quirnel::CombineColumnsCommand(c); }) ||
        !TimeTrimAndExport(path) || !TimeSearches(path))
        return 2;
    if (!TimeClipboardRows(path))
        return 2;
    if (!TimeGraph(path))
        return 2;
    return 0;
}
