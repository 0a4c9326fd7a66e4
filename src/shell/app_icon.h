// The program's icon: the same picture the desktop entry shows.
#pragma once

#include <QIcon>
#include <string>

namespace brindle::shell {

// The id of the desktop entry, the metainfo and the icon.
inline constexpr const char* kApplicationId = "org.brindlesee.Brindlesee";

// The PNG sizes under <resourceDirectory>/../icons/hicolor (installed
// share/icons, in the build tree build/resources/icons), else the icon
// theme's; empty when neither has it.
QIcon applicationIcon(const std::string& resourceDirectory);

}  // namespace brindle::shell
