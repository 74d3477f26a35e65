#pragma once
// A table document over a fresh folder, a scripted user interface and an injectable file
// system, with helpers to write input files and read the table back as UTF-8 text.

#include "document/csv_loader.h"
#include "document/table_document.h"
#include "ostrand/core/string.h"
#include "tests/document/faulty_file_system.h"
#include "tests/support/scripted_ui.h"
#include "tests/support/temp_dir.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace quirnel::test {

using Table = std::vector<std::vector<std::string>>;

class DocumentTest : public testing::Test
{
protected:
    DocumentTest() { m_document.SetFileSystem(m_files); }

    std::string Path(const std::string& name = "data.csv") const { return (m_dir / name).string(); }

    /// Writes `bytes` as data.csv and loads it with `format` (its path is filled in).
    bool Load(std::string_view bytes, FileFormat format = {}, const std::string& title = "Open")
    {
        WriteFile(Path(), bytes);
        format.path = Path();
        m_format = format;
        return LoadCsvFile(m_document, m_format, title);
    }

    /// The column names, then every row, as UTF-8.
    Table Contents() const
    {
        Table table;
        std::vector<std::string> names;
        for (int c = 1; c < m_document.ColumnCount(); ++c)
            names.push_back(m_document.ColumnName(c));
        table.push_back(names);
        for (int r = 0; r < m_document.RowCount(); ++r) {
            std::vector<std::string> row;
            for (int c = 1; c < m_document.ColumnCount(); ++c)
                row.push_back(m_document.IsUnicode() ? ost::Utf16ToUtf8(m_document.CellText16(r, c))
                                                     : std::string(m_document.CellText8(r, c)));
            table.push_back(row);
        }
        return table;
    }

    std::vector<std::string> Entries() const { return m_dir.Entries(); }

    TempDir m_dir;
    ScriptedUi m_ui;
    FaultyFileSystem m_files;
    TableDocument m_document{m_ui};
    FileFormat m_format;
};

} // namespace quirnel::test
