#pragma once

#include "history.h"
#include "map_edits.h"
#include "picking.h"
#include "terrain_brush.h"

#include <cstdint>
#include <string>

/// The map that is being edited and what the user has chosen, without any window: the keys, the panels and the scripts
/// call the same operations. Those that may fail say why in the message.
class Editor {
public:
    enum class Tool : int { Select, Box, Terrain, Object };

    Editor();

    const MapDocument& getDocument() const { return document; }

    /// Counts all changes, undoing and those of the selection included: whoever shows them looks again.
    std::uint64_t getVersion() const { return version; }

    /// Makes an edit that can be undone. With the same tag, not 0, as the edit before it is one step with that.
    template <class Change>
    void edit(Change change, int tag = 0)
    {
        MapDocument changed = document;
        change(changed);
        if (isSameState(changed, document)) return;
        history.keep(document, tag != 0 ? tag : stepTag);
        document = std::move(changed);
        noteChange();
    }

    /// The edits up to endStep are one step.
    void beginStep() { stepTag = --lastStepTag; }

    /// A step that several edits make together is over.
    void endStep()
    {
        stepTag = 0;
        history.endStep();
    }

    void undo();
    void redo();
    bool canUndo() const { return history.canUndo(); }
    bool canRedo() const { return history.canRedo(); }

    // ---- files

    /// Empty; with a name it goes there when it is saved.
    void newMap(const std::string& name = "");
    bool open(const std::string& name);

    /// What the autosave of a map holds, as unsaved changes of the map. For a map that had no name it is that of
    /// getUnnamedFile.
    bool openAutosave(const std::string& name);

    bool save() { return saveAs(fileName); }
    bool saveAs(const std::string& newName);

    /// Where autosaves of maps without a name go; ends with '/' unless it is empty, the working directory.
    void setAutosaveDirectory(const std::string& directory) { autosaveDirectory = directory; }

    /// The name beside which they are kept.
    std::string getUnnamedFile() const { return autosaveDirectory + "unnamed.cfg"; }

    /// Beside the map. Nothing happens without changes since the last one.
    void autosave();

    /// For a user who does not want what is unsaved.
    void removeAutosave() const;

    /// Makes the document what it was when it was saved, as an edit. A map that was never saved becomes empty.
    void revert();

    /// Beside the map, with the ending .map. False when it does not compile or cannot be written.
    bool compile(std::string& outFileName);

    bool hasUnsavedChanges() const { return !isSaved || !isSameState(document, saved); }

    /// Whether the file is missing or holds something else.
    bool needsSaving() const;
    const std::string& getFileName() const { return fileName; } ///< empty until it has one

    // ---- selection

    const Hit& getSelection() const { return selection; }
    void select(const Hit& hit);
    void selectBrush(std::size_t number);
    void selectEntity(std::size_t number);
    void selectNothing() { select({}); }
    bool hasBrush() const { return selection.kind == Hit::Kind::Brush; }
    bool hasEntity() const { return selection.kind == Hit::Kind::Entity; }

    /// Of the selection; empty without one.
    Bounds getSelectionBounds() const;

    void deleteSelection();
    void duplicateSelection();

    /// False when there is nothing to move, or no room there.
    bool moveSelection(const Vector3<double>& by, int tag = 0);

    /// The selection as text; empty without one.
    std::string copySelection() const;

    /// Adds what copySelection gave, one grid step aside, and selects it.
    bool paste(const std::string& text);

    // ---- what the user says last

    const std::string& getMessage() const { return message; }
    void say(const std::string& newMessage) { message = newMessage; }

    Tool tool = Tool::Select;
    double grid = 0.5; ///< world units; 0: none
    std::string texture = "brick.png";
    double textureScale = 0.5;
    double boxHeight = 3;
    std::string entityClass = "lamp";
    TerrainBrush terrainBrush;

private:
    void noteChange();
    void keepSelection();
    void replaceDocument(MapDocument newDocument);
    std::string getAutosaveOwner() const { return fileName.empty() ? getUnnamedFile() : fileName; }
    static Hit addPart(MapDocument& map, const MapSource& part, double step);

    MapDocument document;
    MapDocument saved;     ///< as in the file, or empty
    MapDocument autosaved; ///< or saved since
    bool isSaved = true;   ///< false: the file holds something else, whatever the document is
    History history;
    Hit selection;
    std::shared_ptr<const void> selectedPart; ///< tells where it is when numbers change
    std::size_t selectedAmong = 0;            ///< how many there were
    std::string fileName;
    std::string autosaveDirectory;
    std::string message;
    std::uint64_t version = 1;
    int stepTag = 0;
    int lastStepTag = 0;
};
