// Writes a table whose cells hold markup, quotes and line breaks through the HTML table writer
// and prints, as JSON, the cells it holds and the fragment written, for a real HTML parser to
// compare (check_html_fragment.py).

#include "view/html_table_writer.h"
#include "view/table_control.h"

#include <cstdio>
#include <string>
#include <vector>

namespace {

std::string JsonString(const std::string& text)
{
    std::string out = "\"";
    for (unsigned char c : text) {
        if (c == '"' || c == '\\') {
            out += '\\';
            out += static_cast<char>(c);
        } else if (c < 0x20) {
            char escaped[8];
            std::snprintf(escaped, sizeof escaped, "\\u%04x", c);
            out += escaped;
        } else {
            out += static_cast<char>(c);
        }
    }
    return out + "\"";
}

} // namespace

int main()
{
    using namespace quirnel;
    const std::vector<std::string> names = {"<b>bold</b>", "a\"b'c",
                                            "Gr\xC3\xBC\xC3\x9F"
                                            "e"};
    const std::vector<std::vector<std::string>> rows = {
        {"<script>alert('x')</script>", "&amp;", "]]>"},
        {"<b>not bold</b>", "\"quoted\" and 'single'", "two\nlines\r\nthree"},
        {"  lead and trail  ", "a   b", "<!-- comment -->"},
        {"</td></tr></table><p>", "&lt;&#60;", "\xE2\x82\xAC \xF0\x9F\x98\x80"},
        {"", " ", "x\n\ny"},
    };
    TableControl table;
    for (const std::string& name : names) {
        TableColumn column;
        column.headerText = name;
        table.AddColumn(column);
    }
    table.SetRowCount(static_cast<int>(rows.size()));
    for (std::size_t r = 0; r < rows.size(); ++r)
        for (std::size_t c = 0; c < rows[r].size(); ++c)
            table.SetCellText8(static_cast<int>(r), static_cast<int>(c) + 1, rows[r][c]);
    HtmlTableOptions options;
    options.codePage = 65001;
    options.fontSize = 9.5;

    std::string json = "{\"names\": [";
    for (std::size_t c = 0; c < names.size(); ++c)
        json += (c ? ", " : "") + JsonString(names[c]);
    json += "], \"rows\": [";
    for (std::size_t r = 0; r < rows.size(); ++r) {
        json += r ? ", [" : "[";
        for (std::size_t c = 0; c < rows[r].size(); ++c)
            json += (c ? ", " : "") + JsonString(rows[r][c]);
        json += "]";
    }
    json += "], \"html\": " + JsonString(HtmlTable(table, options)) + "}\n";
    std::fputs(json.c_str(), stdout);
    return 0;
}
