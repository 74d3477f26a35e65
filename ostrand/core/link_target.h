#pragma once
// Where a path that may be a symbolic link finally leads. Files are saved by writing a new file
// and renaming it into place; renamed onto the link itself, it would replace the link by a
// plain file and leave the file the link named unchanged.

#include <cerrno>
#include <climits>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace ost {

/// Follows the symbolic links at the end of `path` (not those among its folders) to the file
/// they finally name, which need not exist; a path that is no link gives itself. False, with
/// the errno value in `error`, for a loop of links or a link that cannot be read.
inline bool ResolveLinkTarget(const std::string& path, std::string& target, int& error)
{
    // The limit the system itself puts on the links followed in one lookup.
    constexpr int kMaxLinks = 40;
    std::string current = path;
    for (int hop = 0; hop <= kMaxLinks; ++hop) {
        struct stat st
        {};
        if (::lstat(current.c_str(), &st) != 0) {
            // A missing file, or a link to one, is created where its name leads.
            if (errno == ENOENT) {
                target = current;
                return true;
            }
            error = errno;
            return false;
        }
        if (!S_ISLNK(st.st_mode)) {
            target = current;
            return true;
        }
        std::string link(PATH_MAX, '\0');
        const ssize_t length = ::readlink(current.c_str(), link.data(), link.size());
        if (length <= 0 || static_cast<std::size_t>(length) >= link.size()) {
            error = length < 0 ? errno : length == 0 ? ENOENT : ENAMETOOLONG;
            return false;
        }
        link.resize(static_cast<std::size_t>(length));
        if (link.front() == '/') {
            current = link;
            continue;
        }
        // A relative link is read from the folder that holds the link.
        const auto slash = current.find_last_of('/');
        current = slash == std::string::npos ? link : current.substr(0, slash + 1) + link;
    }
    error = ELOOP;
    return false;
}

} // namespace ost
