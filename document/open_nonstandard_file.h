#pragma once
// "Open Nonstandard File": the choices the user makes about a file that is not plain CSV, and
// the load that follows them. The dialog itself is the GUI's; this is what it fills.

#include "document/file_format.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace quirnel {

class TableDocument;

struct SeparatorChoice
{
    const char* label;
    char value;
};

/// "Auto-Detect", "Comma", "Tab", "Semi-Colon", "Vertical Bar", in the list's order.
std::span<const SeparatorChoice> NonstandardSeparatorChoices();

/// Texts of the dialog; help titles and texts are shown as tool tips.
namespace nonstandard_text {
inline constexpr const char* kTitle = "Open Nonstandard File";
inline constexpr const char* kNoColumnNames = "No column names";
inline constexpr const char* kNoColumnNamesHelpTitle = "No Column Names";
inline constexpr const char* kNoColumnNamesHelp =
    "If checked, the first line of the CSV file is data, not column names.";
inline constexpr const char* kSeparator = "Separator:";
inline constexpr const char* kSeparatorHelpTitle = "Separator";
inline constexpr const char* kSeparatorHelp = "The character that separates the data fields.";
inline constexpr const char* kCharacterSet = "Character set:";
inline constexpr const char* kCharacterSetHelpTitle = "Character Set";
inline constexpr const char* kCharacterSetHelp =
    "If checked, you may choose the character set that the file uses.  This affects the "
    "appearance of non-ASCII characters.";
inline constexpr const char* kCodePageHelp =
    "The character set that the file uses.  This affects the appearance of non-ASCII "
    "characters.";
inline constexpr const char* kBackslashEscape = "Backslash escape";
inline constexpr const char* kBackslashEscapeHelpTitle = "Backslash Escape";
inline constexpr const char* kBackslashEscapeHelp =
    "If checked, the backslash character (\\) will prevent the next character from ending a "
    "field.  Normally, a comma or quote mark follows it.";
inline constexpr const char* kIgnoreComments = "Ignore comments beginning with \"#\"";
inline constexpr const char* kIgnoreCommentsHelpTitle = "Ignore Comments";
inline constexpr const char* kIgnoreCommentsHelp =
    "If checked, any line that begins with the \"#\" character will be ignored.  Please note "
    "that if the file is saved, the comments will be lost.";
} // namespace nonstandard_text

/// The dialog's defaults in, the user's choices out.
struct OpenNonstandardFileRequest
{
    bool noColumnNames = false;
    /// A value of NonstandardSeparatorChoices(); 0 detects.
    char separator = kSeparatorAuto;
    /// Unchecked means code page 0.
    bool useCharacterSet = false;
    std::uint32_t codePage = 0;
    bool backslashEscape = false;
    bool ignoreComments = false;
    /// The code pages offered, in order: UTF-8, then the others the system can convert.
    std::vector<std::uint32_t> codePages;
};

/// The request as the dialog opens: nothing checked, "Auto-Detect", and the remembered code
/// page preselected (and the box checked) when it is neither 0 nor 65001.
OpenNonstandardFileRequest MakeNonstandardRequest(std::uint32_t rememberedCodePage);

/// The format the answers stand for; the newline stays "\r\n" until the load detects it.
FileFormat FormatFromRequest(const OpenNonstandardFileRequest& request, const std::string& path);

/// The dialog of this subsystem, shown by the GUI and answered from a script in tests.
class DocumentDialogs
{
public:
    virtual ~DocumentDialogs() = default;
    /// False when cancelled.
    virtual bool OpenNonstandardFile(OpenNonstandardFileRequest& request) = 0;
};

/// Asks for the choices about `path`, then loads it under the dialog's title. False when the
/// dialog was cancelled or the load failed.
bool OpenNonstandardFile(TableDocument& document, DocumentDialogs& dialogs, const std::string& path,
                         std::uint32_t rememberedCodePage);

} // namespace quirnel
