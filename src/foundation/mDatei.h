#pragma once

#include <string>

namespace mDatei {

/// The text in front of its last "."; all of it where it has none. Folders aren't known here: a dot in one
/// counts like any other.
std::string RemoveExtension(const std::string& text);

}  // namespace mDatei
