#include <gtest/gtest.h>

#include <zip.h>

#include <filesystem>

#include "album/paths.h"
#include "album/templates.h"
#include "support/session_fixture.h"

namespace brindle {
namespace {

using test::SessionTest;
namespace fs = std::filesystem;

class TemplateTest : public SessionTest {
protected:
    // An album whose default pages carry texts, a picture and real pictures.
    Session& albumWithDefaults() {
        Session& s = start();
        s.AlbumNeu();
        for (const char* f : {"pics/papier.jpg", "pics/umschlag.jpg", "pics/zurueck.jpg", "pics/inhalt.jpg",
                              "pics/vor.jpg", "pics/foto.jpg"})
            touch(f);
        AlbumRecord& a = s.album();
        a.title = "Reise";
        a.htmlDirectory = "/html/";
        a.mailDirectory = "/mail/";
        a.pageDefaults.background = path("pics/papier.jpg");
        a.coverDefaults.background = path("pics/umschlag.jpg");
        for (PageRecord* p : {&a.pageDefaults, &a.coverDefaults}) {
            p->props = {path("pics/zurueck.jpg"), path("pics/inhalt.jpg"), path("pics/vor.jpg"), {}};
            p->texts.add().text = "Willkommen";
            p->pictures.add().path = path("pics/foto.jpg");
            p->searchBoxes.add().caption = "Suche";
        }
        return s;
    }
    std::vector<std::string> zipEntries(const std::string& archive) {
        int err = 0;
        zip_t* z = zip_open(archive.c_str(), ZIP_RDONLY, &err);
        std::vector<std::string> names;
        if (!z) return names;
        for (zip_int64_t i = 0; i < zip_get_num_entries(z, 0); ++i)
            names.push_back(zip_get_name(z, static_cast<zip_uint64_t>(i), 0));
        zip_discard(z);
        std::sort(names.begin(), names.end());
        return names;
    }
    void writeZip(const std::string& archive, const std::vector<std::pair<std::string, std::string>>& entries) {
        int err = 0;
        zip_t* z = zip_open(archive.c_str(), ZIP_CREATE | ZIP_TRUNCATE, &err);
        ASSERT_NE(z, nullptr);
        for (const auto& [name, data] : entries) {
            zip_source_t* src = zip_source_buffer(z, data.data(), data.size(), 0);
            ASSERT_GE(zip_file_add(z, name.c_str(), src, ZIP_FL_ENC_UTF_8), 0);
        }
        ASSERT_EQ(zip_close(z), 0);
    }
};

TEST_F(TemplateTest, WritingATemplateClearsTheAlbumsOwnFieldsAndSetsUpTheDefault) {
    Session& s = albumWithDefaults();
    ASSERT_TRUE(s.schreibeAlbum(path("Meine.vor")));

    AlbumFile vor;
    ASSERT_TRUE(readAlbumFile(path("Meine.vor"), vor).ok());
    EXPECT_EQ(vor.album.title, "");
    EXPECT_EQ(vor.album.htmlDirectory, "");
    EXPECT_EQ(vor.album.mailDirectory, "");
    EXPECT_EQ(vor.album.modified, kTrue);
    EXPECT_EQ(vor.album.pages.upper(), 0);
    EXPECT_EQ(vor.album.pageDefaults.pictures.upper(), 1);

    // The stand-alone default keeps the texts of its default pages but no pictures.
    AlbumFile setup;
    ASSERT_TRUE(readAlbumFile(path("AlbumVorSetup/Album.vor"), setup).ok());
    for (const PageRecord* p : {&setup.album.pageDefaults, &setup.album.coverDefaults}) {
        EXPECT_EQ(p->texts.upper(), 1);
        EXPECT_EQ(p->texts[1].text, "Willkommen");
        EXPECT_EQ(p->pictures.upper(), 0);
        EXPECT_EQ(p->searchBoxes.upper(), 0);
        EXPECT_EQ(p->panoramas.upper(), 0);
    }
    for (const char* f : {"papier.jpg", "umschlag.jpg", "zurueck.jpg", "inhalt.jpg", "vor.jpg"})
        EXPECT_TRUE(dateiVorhanden(path(std::string("AlbumVorSetup/") + f))) << f;
    EXPECT_FALSE(dateiVorhanden(path("AlbumVorSetup/foto.jpg")));
}

TEST_F(TemplateTest, CatalogueNameIsAskedAgainWhenTaken) {
    Session& s = albumWithDefaults();
    touch("Vorlagen/Urlaub.vor");
    prompter.inputs = {"Urlaub", "Winter"};
    std::vector<std::string> drawn;
    ASSERT_TRUE(speichereKatalogVorlage(s, [&](const std::string& jpg, const auto&) {
        drawn.push_back(jpg);
        return true;
    }));
    EXPECT_EQ(prompter.asked, (std::vector<std::string>{
                                  "input|Speichern der Vorlage|Bitte Namen der Vorlage eingeben|Beschreibung",
                                  "message|Achtung|48|Name bereits vergeben!\rBitte geben Sie einen anderen Namen ein",
                                  "input|Speichern der Vorlage|Bitte Namen der Vorlage eingeben|Beschreibung"}));
    EXPECT_EQ(drawn, std::vector<std::string>{path("Vorlagen/Winter.jpg")});
    EXPECT_TRUE(dateiVorhanden(path("Vorlagen/Winter.vor")));
}

TEST_F(TemplateTest, ExportThenImportRestoresTheTemplateWithItsPictures) {
    Session& s = albumWithDefaults();
    fs::create_directories(path("Vorlagen"));
    ASSERT_TRUE(s.schreibeAlbum(path("Vorlagen/Reise.vor")));
    touch("Vorlagen/Reise.jpg");
    ASSERT_TRUE(exportiereVorlage(s, path("Vorlagen/Reise.vor"), path("Reise.bsv")));
    EXPECT_EQ(zipEntries(path("Reise.bsv")),
              (std::vector<std::string>{"Reise.jpg", "Reise.vor", "foto.jpg", "inhalt.jpg", "papier.jpg",
                                        "umschlag.jpg", "vor.jpg", "zurueck.jpg"}));

    // On another machine: the pictures of the first are gone.
    fs::remove_all(path("pics"));
    fs::remove_all(path("Vorlagen"));
    ASSERT_TRUE(importiereVorlage(s, path("Reise.bsv")));
    EXPECT_TRUE(dateiVorhanden(path("Vorlagen/Reise.vor")));
    EXPECT_TRUE(dateiVorhanden(path("Vorlagen/papier.jpg")));

    Session& other = start();
    other.AlbumNeu();
    ASSERT_TRUE(ladeVorlage(other, path("Vorlagen/Reise.vor")));
    EXPECT_EQ(other.album().pageDefaults.background, path("Vorlagen/papier.jpg"));
    EXPECT_EQ(other.album().coverDefaults.props.forwardButton, path("Vorlagen/vor.jpg"));
    EXPECT_EQ(other.album().pageDefaults.texts[1].text, "Willkommen");
    EXPECT_EQ(other.album().title, "Album");
    EXPECT_EQ(other.album().pageCount, 1);
    EXPECT_EQ(other.album().modified, kTrue);
}

TEST_F(TemplateTest, ImportRefusesEscapingEntriesAndDamagedArchives) {
    Session& s = start();
    touch("Vorlagen/Alt.vor");
    fs::create_directories(path("Temp"));
    const auto before = [&] {
        std::vector<std::string> names;
        for (auto& e : fs::recursive_directory_iterator(home())) names.push_back(e.path().string());
        std::sort(names.begin(), names.end());
        return names;
    };
    struct Case {
        const char* name;
        std::vector<std::pair<std::string, std::string>> entries;
    };
    const Case cases[] = {
        {"parent folder", {{"gut.vor", "x"}, {"../boese.txt", "x"}}},
        {"absolute", {{"/tmp/boese.txt", "x"}}},
        {"backslashes", {{"a\\..\\..\\boese.txt", "x"}}},
        {"drive", {{"c:boese.txt", "x"}}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        writeZip(path("x.bsv"), c.entries);
        auto was = before();
        prompter.asked.clear();
        EXPECT_FALSE(importiereVorlage(s, path("x.bsv")));
        EXPECT_EQ(prompter.asked, std::vector<std::string>{"message|Fehler|16|Die Vorlagendatei ist beschädigt oder "
                                                           "ungültig: " + path("x.bsv")});
        EXPECT_EQ(before(), was);
        EXPECT_FALSE(dateiVorhanden(path("boese.txt")));
    }
    writeZip(path("y.bsv"), {{"Neu.vor", std::string(5000, 'a')}});
    std::string bytes = readBytes("y.bsv");
    writeBytes("y.bsv", bytes.substr(0, bytes.size() / 2));
    auto was = before();
    EXPECT_FALSE(importiereVorlage(s, path("y.bsv")));
    EXPECT_EQ(before(), was);
}

TEST_F(TemplateTest, ATemplateWithPicturesBesideItTravelsWholeToACleanProgramDirectory) {
    Session& s = start();
    s.AlbumNeu();
    AlbumRecord& a = s.album();
    // Named bare, or with the folder of a Windows machine: found beside the template.
    a.pageDefaults.background = "Holz-Hintergrund.jpg";
    a.coverDefaults.background = "C:\\Brindlesee\\Vorlagen\\Holz-Umschlag.jpg";
    for (PageRecord* p : {&a.pageDefaults, &a.coverDefaults})
        p->props = {"Holz-ButtonZurück.jpg", "Holz-ButtonInhalt.jpg", "Holz-ButtonVor.jpg", {}};
    fs::create_directories(path("Vorlagen"));
    ASSERT_TRUE(s.schreibeAlbum(path("Vorlagen/Holz.vor")));
    const std::vector<std::string> pictures = {"Holz-Hintergrund.jpg", "Holz-Umschlag.jpg", "Holz-ButtonZurück.jpg",
                                               "Holz-ButtonInhalt.jpg", "Holz-ButtonVor.jpg", "Holz.jpg"};
    for (const std::string& f : pictures) writeBytes("Vorlagen/" + f, "bytes of " + f);
    const std::string vor = readBytes("Vorlagen/Holz.vor");
    ASSERT_TRUE(exportiereVorlage(s, path("Vorlagen/Holz.vor"), path("Holz.bsv")));
    EXPECT_EQ(zipEntries(path("Holz.bsv")),
              (std::vector<std::string>{"Holz-ButtonInhalt.jpg", "Holz-ButtonVor.jpg", "Holz-ButtonZurück.jpg",
                                        "Holz-Hintergrund.jpg", "Holz-Umschlag.jpg", "Holz.jpg", "Holz.vor"}));

    const std::string archive = readBytes("Holz.bsv");
    fs::remove_all(path("Vorlagen"));
    fs::remove_all(path("AlbumVorSetup"));
    writeBytes("Holz.bsv", archive);
    ASSERT_TRUE(importiereVorlage(s, path("Holz.bsv")));
    EXPECT_EQ(readBytes("Vorlagen/Holz.vor"), vor);
    for (const std::string& f : pictures) EXPECT_EQ(readBytes("Vorlagen/" + f), "bytes of " + f) << f;

    Session& other = start();
    other.AlbumNeu();
    ASSERT_TRUE(ladeVorlage(other, path("Vorlagen/Holz.vor")));
    EXPECT_EQ(other.album().pageDefaults.background, path("Vorlagen/Holz-Hintergrund.jpg"));
    EXPECT_EQ(other.album().coverDefaults.props.backButton, path("Vorlagen/Holz-ButtonZurück.jpg"));
}

}  // namespace
}  // namespace brindle
