#include "zor/environment/version_info.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <gelf.h>
#include <libelf.h>
#include <unistd.h>

#include <cstdint>
#include <cstring>
#include <cwchar>
#include <string>

#include "zor/environment/native_text.h"
#include "zor/text/number_text.h"
#include "zor/text/text_lists.h"

namespace {

// This library's own record, generated from the project's name and version at configure time.
[[gnu::section(".zor_version"), gnu::used]] const char kVersionRecord[] =
#include "zor/environment/version_record.inc"
    ;

constexpr const char* kSectionName = ".zor_version";
constexpr const wchar_t* kNoVersionInfo = L"<no version info found>";
// The interface's limit of a module's file name, in units with the terminator.
constexpr std::size_t kPathUnits = 260;

// The bytes of an ELF file's version section; empty if the file isn't ELF or lacks the section.
std::string readSection(const char* fileName) {
    std::string bytes;
    if (::elf_version(EV_CURRENT) == EV_NONE) return bytes;
    const int fd = ::open(fileName, O_RDONLY | O_CLOEXEC);
    if (fd < 0) return bytes;
    if (Elf* elf = ::elf_begin(fd, ELF_C_READ, nullptr)) {
        std::size_t names = 0;
        if (::elf_kind(elf) == ELF_K_ELF && ::elf_getshdrstrndx(elf, &names) == 0) {
            for (Elf_Scn* scn = ::elf_nextscn(elf, nullptr); scn != nullptr;
                 scn = ::elf_nextscn(elf, scn)) {
                GElf_Shdr header;
                if (::gelf_getshdr(scn, &header) == nullptr) continue;
                const char* name = ::elf_strptr(elf, names, header.sh_name);
                if (name == nullptr || std::strcmp(name, kSectionName) != 0) continue;
                if (Elf_Data* data = ::elf_getdata(scn, nullptr);
                    data != nullptr && data->d_buf != nullptr)
                    bytes.assign(static_cast<const char*>(data->d_buf), data->d_size);
                break;
            }
        }
        ::elf_end(elf);
    }
    ::close(fd);
    return bytes;
}

// The record's "query=value" entries as wide "query\0value\0" pairs with a closing 0.
std::wstring wideBlock(const std::string& bytes) {
    std::wstring block;
    for (std::size_t begin = 0; begin < bytes.size();) {
        std::size_t end = bytes.find('\0', begin);
        if (end == std::string::npos) end = bytes.size();
        const std::string entry = bytes.substr(begin, end - begin);
        begin = end + 1;
        const std::size_t eq = entry.find('=');
        if (eq == std::string::npos || eq == 0) continue;
        block += ZOR::detail::fromUtf8(entry.substr(0, eq));
        block += L'\0';
        block += ZOR::detail::fromUtf8(entry.substr(eq + 1));
        block += L'\0';
    }
    block += L'\0';
    return block;
}

// The file of a loaded module, or empty when it can't be told or is too long for the interface.
std::string moduleFile(HINSTANCE module) {
    std::string file;
    if (module == nullptr) {
        char path[kPathUnits * 4];
        const ssize_t n = ::readlink("/proc/self/exe", path, sizeof path - 1);
        if (n <= 0) return {};
        file.assign(path, static_cast<std::size_t>(n));
    } else {
        Dl_info info{};
        if (::dladdr(module, &info) == 0 || info.dli_fname == nullptr) return {};
        file = info.dli_fname;
    }
    return ZOR::detail::fromUtf8(file).size() < kPathUnits ? file : std::string();
}

// The module-wide text of GetProductVersion.
CZorString& productVersionText() {
    static CZorString text;
    return text;
}

}  // namespace

namespace ZOR {

CVersionInfo::CVersionInfo(HINSTANCE module) {
    const std::string file = moduleFile(module);
    if (!file.empty()) read(file.c_str());
}

CVersionInfo::CVersionInfo(const wchar_t* fileName) {
    if (fileName != nullptr) read(detail::toNativePath(fileName).c_str());
}

CVersionInfo::CVersionInfo(const CVersionInfo& other) {
    *this = other;
}

CVersionInfo& CVersionInfo::operator=(const CVersionInfo& other) {
    if (this == &other) return *this;
    unsigned char* copy = nullptr;
    if (other.block.get() != nullptr) {
        copy = new unsigned char[other.blockSize];
        std::memcpy(copy, other.block.get(), other.blockSize);
    }
    block = CUniqPointer<unsigned char>(copy);
    blockSize = other.blockSize;
    valid = other.valid;
    prefix = other.prefix;
    return *this;
}

CVersionInfo::~CVersionInfo() = default;

void CVersionInfo::read(const char* fileName) {
    const std::string bytes = readSection(fileName);
    if (bytes.empty()) return;
    const std::wstring wide = wideBlock(bytes);
    blockSize = wide.size() * sizeof(wchar_t);
    block = CUniqPointer<unsigned char>(new unsigned char[blockSize]);
    std::memcpy(block.get(), wide.data(), blockSize);
    valid = 1;
    // The last language and code page pair names the string table.
    const CZorArrayTempl<CZorString> pairs =
        explode(query(L"\\VarFileInfo\\Translation"), L" ", false);
    if (pairs.len() >= 2) {
        prefix.format(L"\\StringFileInfo\\%04x%04x\\", static_cast<unsigned>(ZOR::xtol(pairs[-2])),
                      static_cast<unsigned>(ZOR::xtol(pairs[-1])));
    }
}

const wchar_t* CVersionInfo::query(const wchar_t* path) const {
    if (valid == 0 || path == nullptr) return nullptr;
    const auto* entry = reinterpret_cast<const wchar_t*>(block.get());
    while (*entry != 0) {
        const wchar_t* value = entry + std::wcslen(entry) + 1;
        if (std::wcscmp(entry, path) == 0) return value;
        entry = value + std::wcslen(value) + 1;
    }
    return nullptr;
}

const wchar_t* CVersionInfo::stringEntry(const wchar_t* name) const {
    if (valid == 0) return kNoVersionInfo;
    if (prefix.isNull()) return nullptr;
    return query(prefix + name);
}

const wchar_t* CVersionInfo::GetProductName() {
    return stringEntry(L"ProductName");
}
const wchar_t* CVersionInfo::GetCompanyName() {
    return stringEntry(L"CompanyName");
}
const wchar_t* CVersionInfo::GetCopyright() {
    return stringEntry(L"LegalCopyright");
}
const wchar_t* CVersionInfo::GetTrademark() {
    return stringEntry(L"LegalTrademarks");
}

const wchar_t* CVersionInfo::GetProductVersion() {
    const wchar_t* fixed = query(L"\\");
    if (fixed == nullptr) return kNoVersionInfo;
    unsigned parts[4] = {0, 0, 0, 0};
    const CZorArrayTempl<CZorString> numbers = explode(fixed, L".", false);
    for (std::uint32_t i = 0; i < numbers.len() && i < 4; ++i)
        parts[i] = static_cast<unsigned>(ZOR::atoui(numbers[static_cast<int>(i)])) & 0xFFFFu;
    CZorString& text = productVersionText();
    text.format(L"%u.%u.%u.%u", parts[0], parts[1], parts[2], parts[3]);
    return text;
}

int CVersionInfo::versionCompare(const wchar_t* a, const wchar_t* b) {
    const CZorArrayTempl<CZorString> left = explode(a, L".", false);
    const CZorArrayTempl<CZorString> right = explode(b, L".", false);
    for (std::uint32_t i = 0; i < left.len() && i < right.len(); ++i) {
        const int x = ZOR::atoi(left[static_cast<int>(i)]);
        const int y = ZOR::atoi(right[static_cast<int>(i)]);
        if (x != y) return x > y ? 1 : -1;
    }
    return 0;
}

}  // namespace ZOR
