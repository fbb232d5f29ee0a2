#pragma once

#include <string>

#include "deskhost/model/document.h"

namespace deskhost {

/// The document's machine setup as an SVG page: for each turret, or for the magazine of a mill, the stations
/// from the front (X-Y) and from the side (Z-X) with the tools' shifts as arrows, and what stands on each
/// station.
std::string draw_document(const Document& document);

}  // namespace deskhost
