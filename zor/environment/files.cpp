#include "zor/environment/files.h"

#include <dirent.h>
#include <fnmatch.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <climits>
#include <cstdint>
#include <ctime>
#include <cwctype>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "zor/environment/native_text.h"

namespace ZOR {
namespace {

// The interface's path limit, in units with the terminator.
constexpr std::size_t kPathUnits = 260;
// The release numbers stamped into product file names.
constexpr int kReleaseYear = 2017;
constexpr int kReleaseNumber = 19;
constexpr int kWordBits = static_cast<int>(sizeof(void*) * CHAR_BIT);

// The temporary file counter, 0 until first used.
std::uint32_t tmpCounter = 0;

bool isSeparator(wchar_t c) {
    return c == L'/' || c == L'\\';
}

// A path cut into drive ("c:"), directory (with its trailing separator), name and extension
// (with its dot). Both separators count, and the extension starts at the last dot of the name.
struct PathParts {
    std::wstring drive, dir, name, ext;
};

PathParts splitPath(const wchar_t* path) {
    PathParts parts;
    std::wstring rest(path);
    if (rest.size() >= 2 && rest[1] == L':') {
        parts.drive = rest.substr(0, 2);
        rest.erase(0, 2);
    }
    std::size_t nameStart = 0;
    for (std::size_t i = 0; i < rest.size(); ++i) {
        if (isSeparator(rest[i])) nameStart = i + 1;
    }
    parts.dir = rest.substr(0, nameStart);
    const std::wstring file = rest.substr(nameStart);
    const std::size_t dot = file.rfind(L'.');
    parts.name = dot == std::wstring::npos ? file : file.substr(0, dot);
    parts.ext = dot == std::wstring::npos ? std::wstring() : file.substr(dot);
    return parts;
}

std::string workingDirectory() {
    std::vector<char> buffer(PATH_MAX);
    if (::getcwd(buffer.data(), buffer.size()) == nullptr) return "/";
    return buffer.data();
}

// The absolute, lexically normalised form of a native path ("." and ".." resolved, no double
// slashes). Nothing is looked up on disk, so links are not resolved.
std::string fullPath(const std::string& path) {
    const std::string joined =
        !path.empty() && path[0] == '/' ? path : workingDirectory() + "/" + path;
    std::vector<std::string> parts;
    std::size_t begin = 0;
    while (begin <= joined.size()) {
        std::size_t end = joined.find('/', begin);
        if (end == std::string::npos) end = joined.size();
        const std::string part = joined.substr(begin, end - begin);
        if (part == "..") {
            if (!parts.empty()) parts.pop_back();
        } else if (!part.empty() && part != ".") {
            parts.push_back(part);
        }
        begin = end + 1;
    }
    std::string full;
    for (const std::string& part : parts) full += "/" + part;
    if (full.empty() || (!joined.empty() && joined.back() == '/')) full += "/";
    return full;
}

// Unit order of directory listings: upper-cased, with "." below every other unit.
wchar_t sortUnit(wchar_t c) {
    return c == L'.' ? 0 : static_cast<wchar_t>(std::towupper(static_cast<wint_t>(c)));
}

bool nameBefore(const CZorString& a, const CZorString& b) {
    const wchar_t* pa = a;
    const wchar_t* pb = b;
    return std::lexicographical_compare(
        pa, pa + a.len(), pb, pb + b.len(),
        [](wchar_t x, wchar_t y) { return sortUnit(x) < sortUnit(y); });
}

// "*.*" matches every name, as it always did; anything else is a shell pattern, matched without
// regard to case.
bool maskMatches(const std::string& pattern, const char* name) {
    return pattern == "*.*" || ::fnmatch(pattern.c_str(), name, FNM_CASEFOLD) == 0;
}

// The blank-separated fields of a mountinfo line, with the octal escapes (\040 for a blank) undone.
std::vector<std::string> mountFields(const std::string& line) {
    std::vector<std::string> fields;
    std::string field;
    for (std::size_t i = 0; i <= line.size(); ++i) {
        if (i == line.size() || line[i] == ' ') {
            if (!field.empty()) fields.push_back(field);
            field.clear();
        } else if (line[i] == '\\' && i + 3 < line.size() &&
                   std::isdigit(static_cast<unsigned char>(line[i + 1]))) {
            field += static_cast<char>(std::stoi(line.substr(i + 1, 3), nullptr, 8));
            i += 3;
        } else {
            field += line[i];
        }
    }
    return fields;
}

// File systems whose files live on another machine: the counterpart of a remote drive.
bool isNetworkFileSystem(const std::string& type) {
    static constexpr const char* kRemote[] = {"nfs",       "nfs4",  "cifs",      "smb3",
                                              "smbfs",     "ncpfs", "afs",       "ceph",
                                              "glusterfs", "9p",    "fuse.sshfs"};
    return std::find_if(std::begin(kRemote), std::end(kRemote),
                        [&](const char* t) { return type == t; }) != std::end(kRemote);
}

}  // namespace

CZorString tmp_dir() {
    CZorString dir(L"%TEMP%/ZORWERK");
    dir.expandEnvironmentStrings();
    ::mkdir(detail::toNativePath(dir).c_str(), 0777);  // an existing folder is no failure
    dir += L"/";
    return dir;
}

CZorString fileNameTmp(const wchar_t* extension) {
    if (extension == nullptr || extension[0] == 0) extension = L"tmp";
    if (tmpCounter == 0) tmpCounter = static_cast<std::uint32_t>(std::time(nullptr));
    const CZorString dir = tmp_dir();
    CZorString name;
    do {
        CZorString file;
        file.format(L"tmp_%x.%s", tmpCounter++, extension);
        name = dir + file;
    } while (fileExist(name));
    return name;
}

CZorString filePath(const wchar_t* path) {
    if (path == nullptr) return CZorString();
    const PathParts parts = splitPath(path);
    return CZorString((parts.drive + parts.dir).c_str());
}

CZorString fileType(const wchar_t* path) {
    if (path == nullptr) return CZorString();
    return CZorString(splitPath(path).ext.c_str()).mid(1, 0xFFFFFFFFu);
}

CZorString stripPath(const wchar_t* path) {
    if (path == nullptr) return CZorString();
    const PathParts parts = splitPath(path);
    return CZorString((parts.name + parts.ext).c_str());
}

const wchar_t* dos_name(CZorString& path) {
    path.replace(L'/', L'\\');
    path.expandEnvironmentStrings();
    return path;
}

bool fileExist(const wchar_t* path) {
    if (path == nullptr) return false;
    CZorString copy(path);
    return ::access(detail::toNativePath(dos_name(copy)).c_str(), F_OK) == 0;
}

std::string detail::remoteName(const std::string& mountInfo, const std::string& path) {
    std::string bestPoint;
    std::string bestSource;
    bool bestRemote = false;
    std::size_t begin = 0;
    while (begin < mountInfo.size()) {
        std::size_t end = mountInfo.find('\n', begin);
        if (end == std::string::npos) end = mountInfo.size();
        const std::vector<std::string> fields = mountFields(mountInfo.substr(begin, end - begin));
        begin = end + 1;
        // id parent dev root mount-point options [optional fields] - type source super-options
        const auto dash = std::find(fields.begin(), fields.end(), "-");
        if (fields.size() < 5 || dash == fields.end() || fields.end() - dash < 3) continue;
        const std::string& point = fields[4];
        const bool covers =
            point == "/" || (path.compare(0, point.size(), point) == 0 &&
                             (path.size() == point.size() || path[point.size()] == '/'));
        // The longest mount point that covers the path wins; a later mount over the same point
        // hides an earlier one.
        if (!covers || point.size() < bestPoint.size()) continue;
        bestPoint = point;
        bestRemote = isNetworkFileSystem(dash[1]);
        bestSource = dash[2];
    }
    if (!bestRemote) return {};
    const std::string behind = bestPoint == "/" ? path : path.substr(bestPoint.size());
    return bestSource + behind;
}

bool fileNameUNC(CZorString& out, const wchar_t* path, bool force) {
    if (path == nullptr) return false;
    if ((path[0] == L'\\' && path[1] == L'\\') || (path[0] == L'/' && path[1] == L'/'))
        return false;
    const std::string full = fullPath(detail::toNativePath(path));
    std::ifstream mounts("/proc/self/mountinfo");
    const std::string mountInfo((std::istreambuf_iterator<char>(mounts)),
                                std::istreambuf_iterator<char>());
    if (const std::string remote = detail::remoteName(mountInfo, full); !remote.empty()) {
        out = detail::fromUtf8(remote).c_str();
        return true;
    }
    if (!force) return false;
    CZorString unc(L"\\\\.\\");
    unc += detail::fromUtf8(full).c_str();
    out = unc;
    return true;
}

bool fileDir(CZorArrayTempl<CZorString>& list, const wchar_t* mask, unsigned long flags) {
    CZorString search(L"*.*");
    if (mask != nullptr) {
        search = mask;
        search.expandEnvironmentStrings();
        search.replace(L'\\', L'/');
        const wchar_t last = search[-1];
        if (last == L'.') search += L"/";
        if (last == L':' || search[-1] == L'/') search += L"*.*";
    }
    const std::string native = detail::toNativePath(search);
    const std::size_t slash = native.rfind('/');
    const std::string folder = slash == std::string::npos ? "." : native.substr(0, slash + 1);
    const std::string pattern = slash == std::string::npos ? native : native.substr(slash + 1);

    DIR* dir = ::opendir(folder.c_str());
    if (dir == nullptr) return false;
    const bool folders = (flags & kFileDirFolders) != 0;
    std::vector<CZorString> names;
    while (const dirent* entry = ::readdir(dir)) {
        const std::string name = entry->d_name;
        if (!maskMatches(pattern, name.c_str())) continue;
        if ((flags & kFileDirSkipHidden) != 0 && name[0] == '.') continue;
        const std::string entryPath = folder + name;
        struct stat target {};
        struct stat link {};
        const bool isDir = ::stat(entryPath.c_str(), &target) == 0 && S_ISDIR(target.st_mode);
        const bool isLink = ::lstat(entryPath.c_str(), &link) == 0 && S_ISLNK(link.st_mode);
        std::wstring wide = detail::fromUtf8(name);
        if (folders) {
            // Links to folders count as reparse points and stay out, as do "." and "..".
            if (!isDir || isLink || name == "." || name == "..") continue;
        } else {
            if (isDir) continue;
            if ((flags & kFileDirNoExtension) != 0) {
                if (const std::size_t dot = wide.rfind(L'.'); dot != std::wstring::npos)
                    wide.erase(dot);
            }
        }
        names.emplace_back(wide.c_str());
    }
    ::closedir(dir);
    if (names.empty()) return false;

    CZorString prefix;
    if ((flags & kFileDirWithPath) != 0) {
        const std::string full = fullPath(native);
        prefix = detail::fromUtf8(full.substr(0, full.rfind('/') + 1)).c_str();
    }
    std::stable_sort(names.begin(), names.end(), nameBefore);
    list.removeAll();
    for (const CZorString& name : names) list.append(prefix.isNull() ? name : prefix + name);
    return true;
}

bool GetCurrentDirectoryW(CZorString& directory) {
    std::vector<char> buffer(PATH_MAX);
    if (::getcwd(buffer.data(), buffer.size()) == nullptr) return false;
    const std::wstring wide = detail::fromUtf8(buffer.data());
    if (wide.empty() || wide.size() >= kPathUnits) return false;
    directory = wide.c_str();
    return true;
}

void generateMenuFileName(CZorString& out, const wchar_t* name, const wchar_t* extension) {
    out.format(L"%s_%d_%d.%s", name != nullptr ? name : L"", kReleaseYear, kReleaseNumber,
               extension != nullptr ? extension : L"");
}

bool appFileName(CZorString& out, const wchar_t* name, const wchar_t* part,
                 const wchar_t* extension) {
    out.format(L"%s_%d_%d_%d_%s.%s", name != nullptr ? name : L"", kReleaseYear, kReleaseNumber,
               kWordBits, part != nullptr ? part : L"", extension != nullptr ? extension : L"");
    return true;
}

CWorkDirOverride::CWorkDirOverride() {
    GetCurrentDirectoryW(saved);
}

CWorkDirOverride::CWorkDirOverride(const wchar_t* directory) {
    GetCurrentDirectoryW(saved);
    if (directory != nullptr) (void)::chdir(detail::toNativePath(directory).c_str());
}

CWorkDirOverride::~CWorkDirOverride() {
    if (!saved.isNull()) (void)::chdir(detail::toNativePath(saved).c_str());
}

}  // namespace ZOR
