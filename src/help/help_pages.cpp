#include "help/help_pages.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <system_error>

namespace brindle::help {

namespace {

std::string_view lastName(std::string_view qualified) {
    const auto colon = qualified.rfind("::");
    return colon == std::string_view::npos ? qualified : qualified.substr(colon + 2);
}

bool isFile(const std::string& path) {
    std::error_code ec;
    return std::filesystem::is_regular_file(path, ec);
}

// Page ids are plain names; anything else could climb out of the help folder.
bool isPlainId(const std::string& id) {
    return !id.empty() && std::all_of(id.begin(), id.end(), [](unsigned char c) {
        return std::isalnum(c) || c == '-' || c == '_';
    });
}

std::string escaped(const std::string& text) {
    std::string out;
    for (char c : text) {
        switch (c) {
            case '<':
                out += "&lt;";
                break;
            case '>':
                out += "&gt;";
                break;
            case '&':
                out += "&amp;";
                break;
            case '"':
                out += "&quot;";
                break;
            default:
                out += c;
        }
    }
    return out;
}

}  // namespace

const std::vector<HelpTopic>& helpTopics() {
    static const std::vector<HelpTopic> topics = {
        {"main-window", "MainWindow", "frmMDI"},
        {"page-editor", "FrmNotePad", "frmNotePad"},
        {"album-explorer", "AlbumExplorer", ""},
        {"options", "OptionsWindow", "frmVorlage"},
        {"wizard", "FrmWizzard", "frmWizzard"},
        {"catalogue", "CatalogueWindow", "frmVorlagen"},
        {"useful-pages", "FrmGenerator", "FrmGenerator"},
        {"text-properties", "FrmFrageText", "FrmFrageText"},
        {"picture-properties", "PictureDialog", "frmFrageBild"},
        {"background-properties", "FrmFrageHintergrund", "frmFrageHintergrund"},
        {"navigation-buttons", "FrmFrageNavigat", "FrmFrageNavigat"},
        {"panorama-properties", "FrmFragePanVo", "FrmFragePanVo"},
        {"play-mode", "FrmVollbild", "frmVollbild"},
        {"photo-design", "DesignWindow", "frmBildbearbeitung"},
        {"red-eye", "RedEyeWindow", "frmRedEYe"},
        {"resize", "ResizeWindow", "frmRezise"},
        {"split", "SplitWindow", "frmBildteilen"},
        {"panorama-stitcher", "MakePanoWindow", "frmMakePano"},
        {"seam-editor", "SeamWindow", "frmMakePanoNaht"},
        {"explorer", "FrmBildviewer", "FrmBildviewer"},
        {"full-view", "FrmVollbildViewer", "FrmVollbildViewer"},
        {"rename-many", "FrmUmbenennenMulti", "frmUmbenennenMulti"},
        {"print", "PrintSheetWindow", "frmDruckenMulti"},
        {"video-maker", "AviMakerWindow", "frmAVImaker"},
        {"scanner", "ScanDialog", "frmScan"},
        {"about", "AboutWindow", "frmInfo"},
        {"hints", "HintWindow", "frmHinweis"},
    };
    return topics;
}

std::string pageForWindow(std::string_view className, std::string_view objectName) {
    const std::string_view name = lastName(className);
    for (const HelpTopic& topic : helpTopics()) {
        if (!name.empty() && topic.className == name) return std::string(topic.pageId);
        if (!objectName.empty() && topic.objectName == objectName) return std::string(topic.pageId);
    }
    return {};
}

const char* languageFolder(Language lang) { return lang == Language::German ? "de" : "en"; }

std::string helpPageFile(const std::string& root, const std::string& id, Language lang) {
    if (!isPlainId(id)) return {};
    const Language other = lang == Language::German ? Language::English : Language::German;
    for (Language l : {lang, other}) {
        const std::string file = root + languageFolder(l) + "/" + id + ".html";
        if (isFile(file)) return file;
    }
    return {};
}

std::string missingPageHtml(const std::string& id, Language lang) {
    const bool de = lang == Language::German;
    return std::string("<html><body><h2>") + (de ? "Hilfeseite fehlt" : "Help page missing") +
           "</h2><p>" + (de ? "Die Hilfeseite „" : "The help page \"") + escaped(id) +
           (de ? "“ ist nicht installiert." : "\" is not installed.") + "</p><p>" +
           (de ? "Bitte installieren Sie Brindlesee erneut, um die Hilfe zu vervollständigen."
               : "Please install Brindlesee again to complete the help.") +
           "</p></body></html>";
}

bool isExternalAddress(std::string_view url) {
    std::string lower(url.substr(0, 8));
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](unsigned char c) { return char(std::tolower(c)); });
    return lower.starts_with("http://") || lower.starts_with("https://") ||
           lower.starts_with("mailto:");
}

}  // namespace brindle::help
