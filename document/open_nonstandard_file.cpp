#include "document/open_nonstandard_file.h"

#include "document/csv_loader.h"
#include "ostrand/codepage/code_page.h"

namespace quirnel {

namespace {

constexpr SeparatorChoice kSeparatorChoices[] = {
    {"Auto-Detect", kSeparatorAuto}, {"Comma", ','}, {"Tab", '\t'}, {"Semi-Colon", ';'},
    {"Vertical Bar", '|'},
};

} // namespace

std::span<const SeparatorChoice> NonstandardSeparatorChoices()
{
    return kSeparatorChoices;
}

OpenNonstandardFileRequest MakeNonstandardRequest(std::uint32_t rememberedCodePage)
{
    OpenNonstandardFileRequest request;
    request.codePages.push_back(ost::kCodePageUtf8);
    for (unsigned codePage : ost::AvailableCodePages())
        request.codePages.push_back(codePage);
    request.codePage = request.codePages.front();
    if (rememberedCodePage != ost::kCodePageSystem && rememberedCodePage != ost::kCodePageUtf8) {
        request.useCharacterSet = true;
        request.codePage = rememberedCodePage;
        bool listed = false;
        for (std::uint32_t codePage : request.codePages)
            listed = listed || codePage == rememberedCodePage;
        if (!listed)
            request.codePages.push_back(rememberedCodePage);
    }
    return request;
}

FileFormat FormatFromRequest(const OpenNonstandardFileRequest& request, const std::string& path)
{
    FileFormat format;
    format.path = path;
    format.noColumnNames = request.noColumnNames;
    format.separator = request.separator;
    format.codePage = request.useCharacterSet ? request.codePage : ost::kCodePageSystem;
    format.backslashEscape = request.backslashEscape;
    format.ignoreComments = request.ignoreComments;
    format.newline = "\r\n";
    return format;
}

bool OpenNonstandardFile(TableDocument& document, DocumentDialogs& dialogs, const std::string& path,
                         std::uint32_t rememberedCodePage)
{
    OpenNonstandardFileRequest request = MakeNonstandardRequest(rememberedCodePage);
    if (!dialogs.OpenNonstandardFile(request))
        return false;
    FileFormat format = FormatFromRequest(request, path);
    return LoadCsvFile(document, format, nonstandard_text::kTitle);
}

} // namespace quirnel
