// The link targets the dialogs' link buttons put into the target box; the
// HTML album and play mode resolve them to the previous, next and contents
// page and the full view.
#pragma once

namespace brindle::properties {

inline constexpr const char* kLinkBack = "<zurück>";
inline constexpr const char* kLinkForward = "<vor>";
inline constexpr const char* kLinkContents = "<inhalt>";
inline constexpr const char* kLinkFullView = "<vollbild>";

}  // namespace brindle::properties
