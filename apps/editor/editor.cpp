#include "editor.h"

#include "map_files.h"
#include "path_name.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

Editor::Editor() : document(makeEmptyDocument()), saved(document), autosaved(document)
{
    say("A new map");
}

void Editor::noteChange()
{
    ++version;
    keepSelection();
}

/// Numbers of parts change when others come and go.
void Editor::keepSelection()
{
    const auto keep = [this](const auto& parts) {
        if (parts.size() != selectedAmong) {
            const auto isSelected = [this](const auto& part) { return part == selectedPart; };
            const auto found = std::find_if(parts.begin(), parts.end(), isSelected);
            selection.number = static_cast<std::size_t>(found - parts.begin());
        }
        if (selection.number >= parts.size())
            selectNothing();
        else
            selectedPart = parts[selection.number];
        selectedAmong = parts.size();
    };
    if (hasBrush()) keep(document.brushes);
    if (hasEntity()) keep(document.entities);
}

void Editor::undo()
{
    say(history.undo(document) ? "Undone" : "There is nothing to undo");
    noteChange();
}

void Editor::redo()
{
    say(history.redo(document) ? "Done again" : "There is nothing to do again");
    noteChange();
}

void Editor::replaceDocument(MapDocument newDocument)
{
    document = std::move(newDocument);
    history.clear();
    selectNothing();
    noteChange();
}

void Editor::newMap(const std::string& name)
{
    replaceDocument(makeEmptyDocument());
    saved = document;
    autosaved = document;
    isSaved = true;
    fileName = name;
    say(name.empty() ? "A new map" : "A new map, " + name);
}

bool Editor::open(const std::string& name)
{
    std::string problem;
    std::optional<MapDocument> loaded = loadMap(name, problem);
    if (!loaded) {
        say(problem);
        return false;
    }
    replaceDocument(std::move(*loaded));
    saved = document;
    autosaved = document;
    isSaved = true;
    fileName = name;
    say("Opened " + name);
    return true;
}

bool Editor::openAutosave(const std::string& name)
{
    std::string problem;
    std::optional<MapDocument> loaded = loadMap(autosaveNameOf(name), problem);
    if (!loaded) {
        say(problem);
        return false;
    }
    const std::optional<MapDocument> inFile = loadMap(name, problem);
    replaceDocument(std::move(*loaded));
    saved = inFile.value_or(makeEmptyDocument());
    autosaved = document;
    isSaved = false;
    fileName = name == getUnnamedFile() ? "" : name;
    say("Opened what was not saved of " + name);
    return true;
}

bool Editor::saveAs(const std::string& newName)
{
    if (newName.empty()) {
        say("The map has no name yet");
        return false;
    }
    std::string problem;
    if (!saveMap(document, newName, problem)) {
        say(problem);
        return false;
    }
    removeAutosave();
    fileName = newName;
    removeAutosave();
    saved = document;
    autosaved = document;
    isSaved = true;
    say("Saved " + fileName);
    return true;
}

void Editor::autosave()
{
    if (!hasUnsavedChanges() || isSameState(document, autosaved)) return;
    std::string problem;
    if (saveMap(document, autosaveNameOf(getAutosaveOwner()), problem))
        autosaved = document;
    else
        say("No autosave: " + problem);
}

void Editor::removeAutosave() const
{
    std::error_code ignored;
    std::filesystem::remove(autosaveNameOf(getAutosaveOwner()), ignored);
}

void Editor::revert()
{
    edit([this](MapDocument& changed) { changed = saved; });
    isSaved = true;
    say("The map is as it was saved");
}

bool Editor::needsSaving() const
{
    std::error_code failure;
    return hasUnsavedChanges() || !std::filesystem::exists(fileName, failure);
}

bool Editor::compile(std::string& outFileName)
{
    if (fileName.empty()) {
        say("The map has no name yet: save it first");
        return false;
    }
    outFileName = nameOf(std::filesystem::path(fileName).replace_extension(".map"));
    std::string problem;
    if (!compileMapFile(document, outFileName, problem)) {
        say(problem);
        return false;
    }
    say("Compiled " + outFileName);
    return true;
}

void Editor::select(const Hit& hit)
{
    ++version;
    selection = {};
    selectedPart = nullptr;
    const auto take = [&](const auto& parts) {
        if (hit.number >= parts.size()) return;
        selection = hit;
        selectedPart = parts[hit.number];
        selectedAmong = parts.size();
    };
    if (hit.kind == Hit::Kind::Brush) take(document.brushes);
    if (hit.kind == Hit::Kind::Entity) take(document.entities);
}

void Editor::selectBrush(std::size_t number)
{
    Hit hit;
    hit.kind = Hit::Kind::Brush;
    hit.number = number;
    select(hit);
}

void Editor::selectEntity(std::size_t number)
{
    Hit hit;
    hit.kind = Hit::Kind::Entity;
    hit.number = number;
    select(hit);
}

Bounds Editor::getSelectionBounds() const
{
    if (hasBrush()) return getBounds(document, *document.brushes[selection.number]);
    if (!hasEntity()) return {};
    const Vector3<double> middle = getPosition(document, *document.entities[selection.number]);
    const Vector3<double> half = {entityHalfSize, entityHalfSize, entityHalfSize};
    return {middle - half, middle + half};
}

void Editor::deleteSelection()
{
    const Hit chosen = selection;
    edit([&](MapDocument& changed) {
        if (chosen.kind == Hit::Kind::Brush) removeBrush(changed, chosen.number);
        if (chosen.kind == Hit::Kind::Entity) removeEntity(changed, chosen.number);
    });
    selectNothing();
}

void Editor::duplicateSelection()
{
    paste(copySelection());
}

bool Editor::moveSelection(const Vector3<double>& by, int tag)
{
    bool isMoved = false;
    const auto change = [&](MapDocument& changed) {
        if (hasBrush()) isMoved = moveBrush(changed, selection.number, by);
        if (hasEntity()) isMoved = moveEntity(changed, selection.number, by);
    };
    edit(change, tag);
    return isMoved;
}

std::string Editor::copySelection() const
{
    MapSource part;
    if (hasBrush()) {
        const PlacedBrush& placed = *document.brushes[selection.number];
        part.meshes.push_back({document.meshOrigins[placed.mesh], {placed.brush}});
    } else if (hasEntity()) {
        // Counted from the world's origin: the text may go into another map.
        MapDocument alone;
        alone.entities.push_back(document.entities[selection.number]);
        moveEntity(alone, 0, document.getEntityOrigin());
        part.entities.push_back(*alone.entities.front());
    } else {
        return {};
    }
    return formatMap(part);
}

bool Editor::paste(const std::string& text)
{
    std::string problem;
    const std::optional<MapSource> part = readMap(text, problem);
    if (!part) {
        say("Nothing that was copied from a map: " + problem);
        return false;
    }
    const double step = grid > 0 ? grid : 0.5;
    Hit added;
    edit([&](MapDocument& changed) { added = addPart(changed, *part, step); });
    if (added.kind == Hit::Kind::Nothing) {
        say("There is nothing to paste, or no room for it");
        return false;
    }
    select(added);
    return true;
}

/// So far aside in x and y; what was added last.
Hit Editor::addPart(MapDocument& map, const MapSource& part, double step)
{
    Hit added;
    for (const MeshSource& mesh : part.meshes) {
        // Into the first mesh, at its place in the world.
        const Vector3<double> shift = Vector3<double>(mesh.origin.x, mesh.origin.y, mesh.origin.z) - map.getOrigin(0) +
                                      Vector3<double>(step, step, 0);
        for (const BrushSource& brush : mesh.brushes) {
            map.brushes.push_back(std::make_shared<const PlacedBrush>(PlacedBrush{brush, 0}));
            if (moveBrush(map, map.brushes.size() - 1, shift)) {
                added.kind = Hit::Kind::Brush;
                added.number = map.brushes.size() - 1;
            } else {
                map.brushes.pop_back();
            }
        }
    }
    for (const EntitySource& entity : part.entities) {
        map.entities.push_back(std::make_shared<const EntitySource>(entity));
        moveEntity(map, map.entities.size() - 1, Vector3<double>(step, step, 0) - map.getEntityOrigin());
        added.kind = Hit::Kind::Entity;
        added.number = map.entities.size() - 1;
    }
    return added;
}
