// ladderSvg.h - the picture of a call as SVG.
#ifndef TOOL_LADDER_SVG_H
#define TOOL_LADDER_SVG_H

#include <string>

#include "output/ladder.h"

// Returns the picture as an SVG document.
std::string ladderSvg(const Ladder& ladder);

#endif  // TOOL_LADDER_SVG_H
