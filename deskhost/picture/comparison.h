#pragma once

#include <set>
#include <string>

#include "deskhost/model/document.h"

namespace deskhost {

/// One state of a document, and the names of the tools in it that a reader is to find.
struct PictureSide {
  const Document& document;
  const std::set<std::string>& concerned;
  const char* title;
};

/// Both states side by side, to stand in a page that has the style sheet of Svg: each turret, or the magazine
/// of a mill, from the front, with the stations that have tools, and those that have a concerned one. Empty
/// where there is no machine setup.
std::string draw_comparison(const PictureSide& left, const PictureSide& right);

}  // namespace deskhost
