#pragma once

#include "map_document.h"

#include <deque>

/// The states of a document, to go back and forth. Consecutive edits that belong together, as while something is
/// dragged, are one step.
class History {
public:
    static constexpr std::size_t mostSteps = 1000;

    /// Call before an edit. With the same tag as the last time nothing is kept, unless the tag is 0.
    void keep(const MapDocument& before, int tag = 0)
    {
        if (tag != 0 && tag == lastTag) return;
        lastTag = tag;
        undone.clear();
        done.push_back(before);
        if (done.size() > mostSteps) done.pop_front();
    }

    /// What follows is a step of its own, whatever its tag.
    void endStep() { lastTag = 0; }

    bool canUndo() const { return !done.empty(); }
    bool canRedo() const { return !undone.empty(); }

    bool undo(MapDocument& document) { return step(done, undone, document); }
    bool redo(MapDocument& document) { return step(undone, done, document); }

    /// Forgets what was before, as for another map.
    void clear()
    {
        done.clear();
        undone.clear();
        lastTag = 0;
    }

private:
    bool step(std::deque<MapDocument>& from, std::deque<MapDocument>& to, MapDocument& document)
    {
        lastTag = 0;
        if (from.empty()) return false;
        to.push_back(document);
        document = from.back();
        from.pop_back();
        return true;
    }

    std::deque<MapDocument> done;
    std::deque<MapDocument> undone;
    int lastTag = 0;
};
