#include "properties/panorama_export.h"

#include "album/file_io.h"
#include "html/html_text.h"
#include "html/page_html.h"
#include "html/web_picture.h"

namespace brindle::properties {

std::string exportPanorama(Session& session, const PanoramaElement& element, const std::string& directory) {
    html::HtmlRun run(session, directory, html::defaultPictureServices());
    PageRecord page;
    PanoramaElement& pano = page.panoramas.add() = element;
    pano.deleted = kFalse;
    // The viewer's box stands at the top left of the page of its own.
    pano.top = 0;
    pano.left = 0;
    const std::string path = directory + "Panorama.htm";
    html::PageBuild build{run, page, 0, path, "<body>", ""};
    const std::string block = html::panoramaBlock(build, 1);
    using html::kEol;
    const std::string out = std::string("<html>") + kEol + "<head>" + kEol + "<title>Panorama</title>" + kEol +
                            "</head>" + kEol + "<body>" + kEol + block + kEol +
                            "<script src=\"bseffects.js\"></script>" + kEol + "</body>" + kEol + "</html>" + kEol;
    run.copyInstalledFile("bseffects.js");
    const IoResult io = writeFileAtomic(path, html::toHtmlBytes(out));
    if (!io.ok) run.deferredError = io.error;
    html::checkDeferredError(run, path);
    return io.ok ? path : std::string();
}

}  // namespace brindle::properties
