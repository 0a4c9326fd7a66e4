// Album templates: a ".vor" is an album without pages (style, options,
// page and cover defaults). "Album.vor" in the program directory is the
// user's default; "Vorlagen" is the catalogue; a ".bsv" carries one
// template with its pictures to another machine.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace brindle {

class Session;

inline constexpr const char* kCatalogueFolder = "Vorlagen";
inline constexpr const char* kTemplateSetupFolder = "AlbumVorSetup";

// Writes the open album as a template, and a stand-alone default with its
// eight pictures into "AlbumVorSetup". False after a message.
bool schreibeVorlage(Session& session, const std::string& path);

// Takes style, default pages and options of the template into the open album.
bool ladeVorlage(Session& session, const std::string& path);

// A new album with the look of the template: the open album is closed as
// "Album neu" closes it, then its fresh first page takes the look as well.
// False when the user kept the open album or the template is unreadable.
bool neuesAlbumMitVorlage(Session& session, const std::string& vorPath);

// The catalogue's templates: the names of the ".vor" files in "Vorlagen", sorted.
std::vector<std::string> katalogVorlagen(const std::string& programDirectory);

// Draws the catalogue preview of the open album as a JPEG; given by the GUI.
// `step` reports each of the seven drawing steps by its status text.
using PreviewPainter =
    std::function<bool(const std::string& jpegPath, const std::function<void(const std::string& step)>& step)>;

// Asks for a name and saves the open album as a catalogue template with
// its preview. False when the user broke off.
bool speichereKatalogVorlage(Session& session, const PreviewPainter& painter);

// The seven status texts of drawing a preview, in order.
const char* const* previewSteps(bool german);

bool exportiereVorlage(Session& session, const std::string& vorPath, const std::string& bsvPath);
bool importiereVorlage(Session& session, const std::string& bsvPath);

}  // namespace brindle
