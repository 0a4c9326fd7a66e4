// A design step is one text line: a name, optionally followed by arguments
// in brackets, e.g. "Rahmen(50,50,20,0,)". The line is the whole record.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace brindle::studio {

// The parts of a step line split at "(", ")", "," and " ", empty parts
// dropped: part 0 is the name, the others the arguments as written.
std::vector<std::string> splitStepLine(std::string_view line);

// Argument `index` (1-based, as the parts count) as a whole number: 0 when
// it is missing or not a number; a decimal part is cut off.
int stepInt(const std::vector<std::string>& parts, std::size_t index);

}  // namespace brindle::studio
