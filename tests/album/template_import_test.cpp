// Template exchange files from outside: an archive whose entry unpacks to
// far more than the archive holds is refused without filling memory.
#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <zlib.h>

#include <filesystem>

#include "album/templates.h"
#include "album/zip_archive.h"
#include "byte_builder.h"
#include "support/session_fixture.h"

namespace brindle {
namespace {

namespace fs = std::filesystem;
using test::Bytes;

constexpr std::uint32_t kChunk = 1u << 20;

// Raw deflate data of `chunks` MiB of zeros: one fully flushed MiB repeated,
// then the final empty block. Small on disk, huge unpacked.
std::string deflatedZeros(std::uint32_t chunks, std::uint32_t& crc) {
    z_stream z{};
    EXPECT_EQ(deflateInit2(&z, 9, Z_DEFLATED, -15, 8, Z_DEFAULT_STRATEGY), Z_OK);
    std::string zeros(kChunk, '\0');
    auto deflateChunk = [&](int flush, std::uint32_t inputBytes) {
        std::string out(kChunk, '\0');
        z.next_in = reinterpret_cast<Bytef*>(zeros.data());
        z.avail_in = inputBytes;
        z.next_out = reinterpret_cast<Bytef*>(out.data());
        z.avail_out = kChunk;
        deflate(&z, flush);
        EXPECT_EQ(z.avail_in, 0u);
        out.resize(kChunk - z.avail_out);
        return out;
    };
    const std::string first = deflateChunk(Z_FULL_FLUSH, kChunk);
    const std::string second = deflateChunk(Z_FULL_FLUSH, kChunk);
    EXPECT_EQ(first, second);  // a full flush starts afresh, so every MiB packs alike
    std::string data;
    for (std::uint32_t i = 0; i < chunks; ++i) data += first;
    data += deflateChunk(Z_FINISH, 0);
    deflateEnd(&z);
    const uLong one = crc32(0, reinterpret_cast<const Bytef*>(zeros.data()), kChunk);
    uLong all = crc32(0, nullptr, 0);
    for (std::uint32_t i = 0; i < chunks; ++i) all = crc32_combine(all, one, kChunk);
    crc = static_cast<std::uint32_t>(all);
    return data;
}

// A ZIP archive of one deflated entry, built field by field; `declared` is
// the unpacked size its headers claim.
std::string zipOfOne(const std::string& name, const std::string& deflated, std::uint32_t crc,
                     std::uint32_t declared) {
    auto common = [&](Bytes& b) {
        b.u16(20).u16(0).u16(8).u16(0).u16(0x21).u32(crc);
        b.u32(static_cast<std::uint32_t>(deflated.size())).u32(declared).u16(static_cast<std::uint16_t>(name.size()));
        b.u16(0);
    };
    Bytes local;
    local.u32(0x04034b50);
    common(local);
    local.raw(name).raw(deflated);
    Bytes central;
    central.u32(0x02014b50).u16(20);
    common(central);
    central.u16(0).u16(0).u16(0).u32(0).u32(0).raw(name);
    Bytes end;
    end.u32(0x06054b50).u16(0).u16(0).u16(1).u16(1);
    end.u32(static_cast<std::uint32_t>(central.bytes().size())).u32(static_cast<std::uint32_t>(local.bytes().size()));
    end.u16(0);
    return local.bytes() + central.bytes() + end.bytes();
}

class TemplateImportTest : public test::SessionTest {
protected:
    std::vector<std::string> listing() {
        std::vector<std::string> names;
        for (auto& e : fs::recursive_directory_iterator(home())) names.push_back(e.path().string());
        std::sort(names.begin(), names.end());
        return names;
    }
};

TEST_F(TemplateImportTest, AnEntryOfAGibibyteIsRefusedWithoutFillingMemory) {
    std::uint32_t crc = 0;
    const std::string deflated = deflatedZeros(1024, crc);
    const std::string archive = zipOfOne("Bombe.jpg", deflated, crc, 1024u * kChunk);
    ASSERT_LT(archive.size(), 2u << 20);
    writeBytes("bombe.bsv", archive);
    touch("Vorlagen/Alt.vor");
    fs::create_directories(path("Temp"));
    const auto before = listing();

    // In a child, so its peak memory is its own.
    pid_t pid = ::fork();
    if (pid == 0) {
        Session& s = start();
        rusage start{}, end{};
        ::getrusage(RUSAGE_SELF, &start);
        const bool imported = importiereVorlage(s, path("bombe.bsv"));
        ::getrusage(RUSAGE_SELF, &end);
        const long grewKiB = end.ru_maxrss - start.ru_maxrss;
        const bool askedOnce =
            prompter.asked == std::vector<std::string>{"message|Fehler|16|Die Vorlagendatei ist beschädigt oder "
                                                       "ungültig: " + path("bombe.bsv")};
        ::_exit(imported ? 1 : grewKiB > 64 * 1024 ? 2 : !askedOnce ? 3 : 0);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(pid, &status, 0), pid);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0) << "1: imported, 2: memory grew past 64 MiB, 3: wrong message";
    EXPECT_EQ(listing(), before);  // nothing half-written stays
}

TEST_F(TemplateImportTest, AnEntryThatUnpacksPastItsLimitIsCutOffAndRemoved) {
    std::uint32_t crc = 0;
    const std::string deflated = deflatedZeros(8, crc);
    fs::create_directories(path("aus"));
    struct Case {
        const char* name;
        std::uint32_t declared;
    };
    // Honest headers, and headers that claim a small entry.
    for (const Case& c : {Case{"honest", 8 * kChunk}, Case{"lying", 1000}}) {
        SCOPED_TRACE(c.name);
        writeBytes("gross.bsv", zipOfOne("gross.jpg", deflated, crc, c.declared));
        ZipLimits limits;
        limits.entryBytes = 2 * kChunk;
        EXPECT_FALSE(extractZipArchive(path("gross.bsv"), path("aus/"), limits));
        EXPECT_TRUE(fs::is_empty(path("aus")));
    }
    // Within the limits the entry comes out whole.
    writeBytes("gross.bsv", zipOfOne("gross.jpg", deflated, crc, 8 * kChunk));
    ZipLimits roomy;
    roomy.entryBytes = 8 * kChunk;
    ASSERT_TRUE(extractZipArchive(path("gross.bsv"), path("aus/"), roomy));
    EXPECT_EQ(fs::file_size(path("aus/gross.jpg")), 8u * kChunk);
    EXPECT_EQ(readBytes("aus/gross.jpg"), std::string(8 * kChunk, '\0'));
    // All entries together count as well.
    fs::remove(path("aus/gross.jpg"));
    roomy.totalBytes = 4 * kChunk;
    EXPECT_FALSE(extractZipArchive(path("gross.bsv"), path("aus/"), roomy));
    EXPECT_TRUE(fs::is_empty(path("aus")));
}

}  // namespace
}  // namespace brindle
