// The page file (.apg): FileHead, then a PageRecord. The older layout (head
// with the older product text) stops after `music`; its page keeps the
// stack, search boxes, title and description of the defaults it starts from.
#pragma once

#include <string>
#include <string_view>

#include "album/file_result.h"
#include "album/records.h"

namespace brindle {

inline constexpr const char* kPageFormat = "Album Seite: Brindlesee Pro, Version 1.0";
inline constexpr const char* kPageFormatOlder = "Album Seite: HTML-Reisebuch Pro, Version 1.0";

struct PageFile {
    FileHead head;
    PageRecord page;
    bool olderLayout = false;
};

bool isPageFormat(const std::string& format);

// `defaults` is what a new slot gets (the album's page or cover defaults).
FileResult decodePage(std::string_view bytes, const PageRecord& defaults, PageFile& out,
                      const std::string& path = {});
FileResult encodePage(const PageRecord& page, std::string& bytes);

FileResult readPageFile(const std::string& path, const PageRecord& defaults, PageFile& out);
FileResult writePageFile(const std::string& path, const PageRecord& page);

// A page read for the session gets a title and description when it has none.
void fillPageTexts(PageRecord& page, const std::string& albumTitle);

// True for the names of covers, contents and template pages, either language.
bool istSpezialseite(const std::string& title);

}  // namespace brindle
