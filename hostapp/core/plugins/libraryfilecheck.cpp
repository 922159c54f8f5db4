// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/plugins/libraryfilecheck.h"

#include "hostapp/core/files/filechecks.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <limits>
#include <vector>

#include <elf.h>
#include <link.h>
#include <sys/stat.h>
#include <unistd.h>

// The ELF header of the library this code is linked into, defined by the linker. A library for
// this program has to match it in class, byte order and processor, whatever this build is.
// NOLINTNEXTLINE(bugprone-reserved-identifier): the name is the linker's
extern "C" const ElfW(Ehdr) __ehdr_start __attribute__((visibility("hidden")));

namespace vantrel::host {

namespace {

using Header = ElfW(Ehdr);
using ProgramHeader = ElfW(Phdr);
using SectionHeader = ElfW(Shdr);

constexpr quint64 Largest = std::numeric_limits<quint64>::max();

QString notRegular(mode_t mode)
{
    const char *kind = S_ISDIR(mode)    ? "a folder"
                       : S_ISFIFO(mode) ? "a FIFO"
                       : S_ISCHR(mode)  ? "a character device"
                       : S_ISBLK(mode)  ? "a block device"
                       : S_ISSOCK(mode) ? "a socket"
                                        : "something else";
    return QStringLiteral("not a regular file (it is %1)").arg(QLatin1String(kind));
}

QString machineName(int machine)
{
    switch (machine) {
    case EM_386:
        return QStringLiteral("x86 (32-bit)");
    case EM_X86_64:
        return QStringLiteral("x86-64");
    case EM_ARM:
        return QStringLiteral("ARM (32-bit)");
    case EM_AARCH64:
        return QStringLiteral("AArch64");
    case EM_RISCV:
        return QStringLiteral("RISC-V");
    case EM_PPC64:
        return QStringLiteral("64-bit PowerPC");
    case EM_S390:
        return QStringLiteral("IBM Z");
    case EM_MIPS:
        return QStringLiteral("MIPS");
    default:
        return QStringLiteral("ELF machine %1").arg(machine);
    }
}

QString typeName(int type)
{
    switch (type) {
    case ET_EXEC:
        return QStringLiteral("a program");
    case ET_REL:
        return QStringLiteral("an object file");
    case ET_CORE:
        return QStringLiteral("a core dump");
    default:
        return QStringLiteral("ELF type %1").arg(type);
    }
}

// Empty when length bytes at offset lie within a file of size bytes, else the message that says
// where they begin or end.
QString outside(const QString &what, quint64 offset, quint64 length, quint64 size)
{
    if (offset <= size && length <= size - offset)
        return {};
    if (offset > size) {
        return QStringLiteral("damaged library: %1 starts at byte %2, past the end of the file "
                              "(%3 bytes)")
            .arg(what)
            .arg(offset)
            .arg(size);
    }
    const quint64 end = length > Largest - offset ? Largest : offset + length;
    return QStringLiteral(
               "damaged library: %1 ends at byte %2, past the end of the file (%3 bytes)")
        .arg(what)
        .arg(end)
        .arg(size);
}

quint64 tableLength(quint64 count, quint64 entryLength)
{
    return count > Largest / entryLength ? Largest : count * entryLength;
}

class OpenFile
{
public:
    explicit OpenFile(int descriptor)
        : m_descriptor(descriptor)
    {}
    ~OpenFile()
    {
        if (m_descriptor >= 0)
            ::close(m_descriptor);
    }
    OpenFile(const OpenFile &) = delete;
    OpenFile &operator=(const OpenFile &) = delete;

    int descriptor() const { return m_descriptor; }

    // Reads exactly length bytes at offset, a range the caller has checked against the size.
    bool read(quint64 offset, void *to, size_t length, QString *problem) const
    {
        auto *bytes = static_cast<char *>(to);
        while (length > 0) {
            const ssize_t got = ::pread(m_descriptor, bytes, length, off_t(offset));
            if (got < 0 && errno == EINTR)
                continue;
            if (got < 0) {
                *problem = QStringLiteral("cannot be read: %1").arg(qt_error_string(errno));
                return false;
            }
            if (got == 0) {
                *problem = QStringLiteral("cannot be read: the file became shorter while it was "
                                          "being read");
                return false;
            }
            bytes += got;
            offset += quint64(got);
            length -= size_t(got);
        }
        return true;
    }

    // Reads a table of count entries at offset a batch at a time, so that a damaged count cannot
    // make the check allocate more than a batch; visit returns false to stop.
    template<typename Entry, typename Visit>
    bool readTable(quint64 offset, quint64 count, QString *problem, Visit visit) const
    {
        constexpr quint64 Batch = 256;
        std::vector<Entry> entries(size_t(std::min(count, Batch)));
        for (quint64 first = 0; first < count; first += Batch) {
            const quint64 n = std::min(Batch, count - first);
            if (!read(offset + first * sizeof(Entry), entries.data(), n * sizeof(Entry), problem))
                return false;
            for (quint64 i = 0; i < n; ++i) {
                if (!visit(first + i, entries[size_t(i)]))
                    return false;
            }
        }
        return true;
    }

private:
    int m_descriptor;
};

bool checkProgramHeaders(const OpenFile &file, const Header &header, quint64 size, QString *problem)
{
    if (header.e_phentsize != sizeof(ProgramHeader)) {
        *problem = QStringLiteral("damaged library: its program headers are %1 bytes each where "
                                  "%2 are expected")
                       .arg(header.e_phentsize)
                       .arg(sizeof(ProgramHeader));
        return false;
    }
    if (header.e_phnum == 0) {
        *problem = QStringLiteral("damaged library: it has no program headers");
        return false;
    }
    *problem = outside(QStringLiteral("the program header table"),
                       header.e_phoff,
                       tableLength(header.e_phnum, sizeof(ProgramHeader)),
                       size);
    if (!problem->isEmpty())
        return false;

    std::vector<ProgramHeader> loads;
    ProgramHeader dynamic = {};
    bool hasDynamic = false;
    const bool read = file.readTable<ProgramHeader>(
        header.e_phoff, header.e_phnum, problem, [&](quint64 index, const ProgramHeader &segment) {
            if (segment.p_type == PT_NULL)
                return true; // an unused entry: its other fields mean nothing
            *problem = outside(
                QStringLiteral("segment %1").arg(index), segment.p_offset, segment.p_filesz, size);
            if (!problem->isEmpty())
                return false;
            if (segment.p_type == PT_LOAD) {
                if (segment.p_filesz > segment.p_memsz) {
                    *problem = QStringLiteral("damaged library: segment %1 takes %2 bytes of the "
                                              "file into %3 bytes of memory")
                                   .arg(index)
                                   .arg(quint64(segment.p_filesz))
                                   .arg(quint64(segment.p_memsz));
                    return false;
                }
                loads.push_back(segment);
            } else if (segment.p_type == PT_DYNAMIC) {
                dynamic = segment;
                hasDynamic = true;
            }
            return true;
        });
    if (!read)
        return false;
    if (loads.empty()) {
        *problem = QStringLiteral("damaged library: it has no loadable segment");
        return false;
    }
    // The loader reads the dynamic section where it lands in memory, not from the file: it has to
    // lie inside a loaded segment.
    if (hasDynamic && std::none_of(loads.begin(), loads.end(), [&](const ProgramHeader &load) {
            return dynamic.p_vaddr >= load.p_vaddr && dynamic.p_vaddr - load.p_vaddr <= load.p_memsz
                   && dynamic.p_memsz <= load.p_memsz - (dynamic.p_vaddr - load.p_vaddr);
        })) {
        *problem = QStringLiteral("damaged library: its dynamic section lies outside its loadable "
                                  "segments");
        return false;
    }
    return true;
}

bool checkSectionHeaders(const OpenFile &file, const Header &header, quint64 size, QString *problem)
{
    if (header.e_shoff == 0)
        return true; // no section table: the loader does not need one
    if (header.e_shentsize != sizeof(SectionHeader)) {
        *problem = QStringLiteral("damaged library: its section headers are %1 bytes each where "
                                  "%2 are expected")
                       .arg(header.e_shentsize)
                       .arg(sizeof(SectionHeader));
        return false;
    }
    const QString table = QStringLiteral("the section header table");
    quint64 count = header.e_shnum;
    if (count == 0) {
        // More sections than e_shnum can hold: the count is in the first entry's size.
        *problem = outside(table, header.e_shoff, sizeof(SectionHeader), size);
        SectionHeader first = {};
        if (!problem->isEmpty() || !file.read(header.e_shoff, &first, sizeof first, problem))
            return false;
        count = first.sh_size;
    }
    *problem = outside(table, header.e_shoff, tableLength(count, sizeof(SectionHeader)), size);
    if (!problem->isEmpty())
        return false;
    return file.readTable<SectionHeader>(
        header.e_shoff, count, problem, [&](quint64 index, const SectionHeader &section) {
            if (section.sh_type == SHT_NULL || section.sh_type == SHT_NOBITS)
                return true; // no bytes in the file
            *problem = outside(
                QStringLiteral("section %1").arg(index), section.sh_offset, section.sh_size, size);
            return problem->isEmpty();
        });
}

bool checkElf(const OpenFile &file, quint64 size, QString *problem)
{
    const Header &own = __ehdr_start;
    if (size == 0) {
        *problem = QStringLiteral("not a library: the file is empty");
        return false;
    }
    unsigned char ident[EI_NIDENT] = {};
    if (!file.read(0, ident, size_t(std::min<quint64>(size, EI_NIDENT)), problem))
        return false;
    if (size < SELFMAG || std::memcmp(ident, ELFMAG, SELFMAG) != 0) {
        *problem = QStringLiteral("not a library: it does not start with the ELF signature");
        return false;
    }
    // The class and byte order come first: they say how long the rest of the header is.
    auto cutShort = [&] {
        *problem = QStringLiteral("damaged library: the file (%1 bytes) ends inside the ELF "
                                  "header (%2 bytes)")
                       .arg(size)
                       .arg(sizeof(Header));
        return false;
    };
    if (size < EI_NIDENT)
        return cutShort();
    auto bits = [](unsigned char elfClass) {
        return elfClass == ELFCLASS32   ? QStringLiteral("32-bit")
               : elfClass == ELFCLASS64 ? QStringLiteral("64-bit")
                                        : QStringLiteral("unknown (ELF class %1)").arg(elfClass);
    };
    if (ident[EI_CLASS] != own.e_ident[EI_CLASS]) {
        *problem = QStringLiteral("built for %1 programs, and this program is %2")
                       .arg(bits(ident[EI_CLASS]), bits(own.e_ident[EI_CLASS]));
        return false;
    }
    auto order = [](unsigned char data) {
        return data == ELFDATA2LSB   ? QStringLiteral("little-endian")
               : data == ELFDATA2MSB ? QStringLiteral("big-endian")
                                     : QStringLiteral("unknown (ELF data %1)").arg(data);
    };
    if (ident[EI_DATA] != own.e_ident[EI_DATA]) {
        *problem = QStringLiteral("built for %1 processors, and this program runs on %2 ones")
                       .arg(order(ident[EI_DATA]), order(own.e_ident[EI_DATA]));
        return false;
    }
    if (size < sizeof(Header))
        return cutShort();
    Header header = {};
    if (!file.read(0, &header, sizeof header, problem))
        return false;
    if (ident[EI_VERSION] != EV_CURRENT || header.e_version != EV_CURRENT) {
        *problem = QStringLiteral("damaged library: unknown ELF version %1")
                       .arg(ident[EI_VERSION] != EV_CURRENT ? quint32(ident[EI_VERSION])
                                                            : quint32(header.e_version));
        return false;
    }
    if (header.e_type != ET_DYN) {
        *problem
            = QStringLiteral("not a shared library: the file is %1").arg(typeName(header.e_type));
        return false;
    }
    if (header.e_machine != own.e_machine) {
        *problem = QStringLiteral("built for another processor (%1), and this program runs on %2")
                       .arg(machineName(header.e_machine), machineName(own.e_machine));
        return false;
    }
    return checkProgramHeaders(file, header, size, problem)
           && checkSectionHeaders(file, header, size, problem);
}

} // namespace

bool checkLibraryFile(const QString &path, QString *problem)
{
    QString message;
    auto fail = [&](const QString &what) {
        if (problem)
            *problem = what;
        return false;
    };
    struct stat info = {};
    const OpenFile file(openIfRegular(path, &info));
    if (file.descriptor() < 0) {
        return fail(info.st_mode != 0
                        ? notRegular(info.st_mode)
                        : QStringLiteral("cannot be read: %1").arg(qt_error_string(errno)));
    }
    if (!checkElf(file, quint64(info.st_size), &message))
        return fail(message);
    return true;
}

} // namespace vantrel::host
