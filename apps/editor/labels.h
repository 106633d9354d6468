#pragma once

#include "layout.h"
#include "map_document.h"
#include "viewpoint.h"

/// Writes the classes of entities that are near beside them, under the panels. Between Gui::begin and Gui::draw.
void showLabels(const MapDocument& document, const Viewpoint& camera, const ScreenArea& area);
