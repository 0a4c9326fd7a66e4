// info and resave: the album, page and options files.
#include <cstdio>
#include <iostream>

#include "album/album_file.h"
#include "album/file_io.h"
#include "album/options_file.h"
#include "album/page_file.h"
#include "album/paths.h"
#include "album/record_fields.h"
#include "shell/cli_commands.h"
#include "shell/cli_text.h"
#include "shell/json_dump.h"

namespace brindle::cli {
namespace {

enum class Kind { Album, Page, Options, Unknown };

// By extension first, then by name, then by the head the file starts with.
Kind kindOf(const std::string& path, const std::string& bytes) {
    if (endsWithNoCase(path, ".apr") || endsWithNoCase(path, ".vor")) return Kind::Album;
    if (endsWithNoCase(path, ".apg")) return Kind::Page;
    std::string dir, name;
    teilePfad(path, dir, name);
    if (asciiLower(name) == kOptionsFileName) return Kind::Options;
    FileHead head;
    BinaryReader reader(bytes);
    try {
        reader.read(head);
    } catch (const CodecError&) {
        return Kind::Unknown;
    }
    if (isAlbumFormat(head.format)) return Kind::Album;
    if (isPageFormat(head.format)) return Kind::Page;
    return Kind::Unknown;
}

int failWith(const FileResult& r) { return fail(blankLineBreaks(fileMessage(r, Language::English))); }

// The record of any kind, read from `path`; `kind` says which member is set.
struct Loaded {
    Kind kind = Kind::Unknown;
    AlbumFile album;
    PageFile page;
    OptionsRecord options;
};

int load(const std::string& path, Loaded& out) {
    if (!dateiVorhanden(path)) return failWith({FileStatus::NotFound, path, {}});
    std::string bytes;
    IoResult io = readWholeFile(path, bytes);
    if (!io.ok) return failWith({FileStatus::OpenFailed, path, io.error});
    out.kind = kindOf(path, bytes);
    FileResult r;
    switch (out.kind) {
        case Kind::Album: r = decodeAlbum(bytes, out.album, path); break;
        case Kind::Page: {
            AlbumRecord defaults;
            ladeStandards(defaults, {});
            r = decodePage(bytes, defaults.pageDefaults, out.page, path);
            break;
        }
        case Kind::Options: r = decodeOptions(bytes, out.options, path); break;
        case Kind::Unknown: r = {FileStatus::InvalidFormat, path, {}}; break;
    }
    return r.ok() ? 0 : failWith(r);
}

}  // namespace

int fail(const std::string& message) {
    std::cerr << "brindlesee-cli: " << message << "\n";
    return 1;
}

int info(const Args& args) {
    if (args.size() != 1) return fail("usage: brindlesee-cli info FILE");
    Loaded loaded;
    if (int rc = load(args[0], loaded)) return rc;
    JsonDump dump;
    std::string kind;
    switch (loaded.kind) {
        case Kind::Album:
            kind = "album";
            dump("kind", kind);
            visitFields(dump, loaded.album.head);
            visitFields(dump, loaded.album.album);
            break;
        case Kind::Page:
            kind = "page";
            dump("kind", kind);
            visitFields(dump, loaded.page.head);
            visitFields(dump, loaded.page.page);
            break;
        default:
            kind = "options";
            dump("kind", kind);
            dump.null("format");
            dump.null("contact");
            visitFields(dump, loaded.options);
    }
    std::cout << dump.finish();
    return 0;
}

int resave(const Args& args) {
    if (args.size() != 2) return fail("usage: brindlesee-cli resave IN OUT");
    Loaded loaded;
    if (int rc = load(args[0], loaded)) return rc;
    FileResult r;
    switch (loaded.kind) {
        case Kind::Album: r = writeAlbumFile(args[1], loaded.album.album); break;
        case Kind::Page: r = writePageFile(args[1], loaded.page.page); break;
        default: r = writeOptionsFile(args[1], loaded.options);
    }
    return r.ok() ? 0 : failWith(r);
}

}  // namespace brindle::cli
