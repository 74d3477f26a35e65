#pragma once
// Making the editor the program that opens a file type. The steps run over a small key/value
// store shaped like the registry's classes root, so one algorithm serves the desktop's own
// store and the in-memory store of the tests.

#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace ost {
class UserInterface;
}

namespace quirnel {

inline constexpr const char* kAssociationClass = "Veltrane Quirnel";

enum class AssociationRoot
{
    Classes,
    CurrentUser
};

enum class StoreResult
{
    Ok,
    AccessDenied,
    Failed
};

/// Keys are backslash-separated paths below a root; a value name "" is the key's default value.
class AssociationStore
{
public:
    virtual ~AssociationStore() = default;

    virtual std::optional<std::string> ReadValue(AssociationRoot root, const std::string& key,
                                                 const std::string& name) = 0;
    /// Creates the key (and its parents) as needed.
    virtual StoreResult WriteValue(AssociationRoot root, const std::string& key,
                                   const std::string& name, const std::string& value) = 0;
    /// Removing what does not exist succeeds.
    virtual StoreResult DeleteKey(AssociationRoot root, const std::string& key) = 0;
    virtual StoreResult DeleteValue(AssociationRoot root, const std::string& key,
                                    const std::string& name) = 0;
    /// Tells the desktop that associations changed; a store that buffers writes commits here.
    virtual void NotifyChanged() = 0;

    /// Whether the process could restart itself with more rights, and doing so. No desktop
    /// this program runs on elevates a process, so only a Windows store would answer true.
    virtual bool CanElevate() { return false; }
    virtual void RestartElevated(const std::string& parameters) { (void)parameters; }
};

struct AssociateOptions
{
    bool asDefault = true;
    bool suppressSuccess = false;
    bool addNewFileEntry = false;
    bool skipConfirmation = false;
};

/// Runs the association for each extension. True when the user asked for another association
/// ("Another" in the success box), false when finished (also after a refusal or failure).
bool AssociateExtension(const std::vector<std::string>& extensions, const AssociateOptions& options,
                        AssociationStore& store, ost::UserInterface& ui,
                        const std::string& programPath);

/// The other program's command as shown to the user: "%1" and quotes stripped, trimmed.
std::string DisplayedCommand(const std::string& command);

/// A store held in memory; tests inspect it and inject access failures per key.
class InMemoryAssociationStore : public AssociationStore
{
public:
    using Key = std::pair<AssociationRoot, std::string>;

    std::optional<std::string> ReadValue(AssociationRoot root, const std::string& key,
                                         const std::string& name) override;
    StoreResult WriteValue(AssociationRoot root, const std::string& key, const std::string& name,
                           const std::string& value) override;
    StoreResult DeleteKey(AssociationRoot root, const std::string& key) override;
    StoreResult DeleteValue(AssociationRoot root, const std::string& key,
                            const std::string& name) override;
    void NotifyChanged() override { ++m_notifications; }

    bool HasKey(AssociationRoot root, const std::string& key) const;
    /// Writes and deletes at or below this key answer with `result`.
    void Deny(AssociationRoot root, const std::string& key, StoreResult result);
    int Notifications() const { return m_notifications; }
    const std::map<Key, std::map<std::string, std::string>>& Keys() const { return m_keys; }

protected:
    std::map<Key, std::map<std::string, std::string>> m_keys;

private:
    StoreResult Denied(AssociationRoot root, const std::string& key) const;

    std::map<Key, StoreResult> m_denied;
    int m_notifications = 0;
};

/// The freedesktop store: what the algorithm writes for the class is turned into a desktop
/// entry for the program in <dataFolder>/applications, and the extension's MIME type gets that
/// entry as its default application in <configFolder>/mimeapps.list when NotifyChanged runs.
class FreedesktopAssociationStore : public InMemoryAssociationStore
{
public:
    FreedesktopAssociationStore(std::string dataFolder, std::string configFolder);

    std::optional<std::string> ReadValue(AssociationRoot root, const std::string& key,
                                         const std::string& name) override;
    void NotifyChanged() override;

    static std::string MimeTypeForExtension(const std::string& extension);
    static constexpr const char* kDesktopFileName = "quirnel.desktop";
    /// False when a file could not be written during the last NotifyChanged.
    bool LastCommitOk() const { return m_commitOk; }

private:
    std::string DesktopPath() const;
    std::string MimeAppsPath() const;
    /// The desktop entry currently the default for this MIME type, or "".
    std::string DefaultDesktopEntry(const std::string& mimeType) const;
    std::string ExecOfDesktopEntry(const std::string& entry) const;

    std::string m_dataFolder;
    std::string m_configFolder;
    bool m_commitOk = true;
};

} // namespace quirnel
