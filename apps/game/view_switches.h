#pragma once

#include "presentation.h"

/// A key that does something once each time it goes down, however long it is held: the keyboard repeats it.
class Switch {
public:
    explicit Switch(int key) : key(key) {}

    bool isThrown(InputDevice& input);

private:
    int key;
    bool wasDown = false;
};

/// The keys that choose what is drawn: C, O, L, B, F, H and Tab.
class ViewSwitches {
public:
    explicit ViewSwitches(InputDevice& input);

    /// Once a frame.
    void handle(Presentation& presentation);

    void switchWireframe() { isWireframe = !isWireframe; }
    DrawStyle getStyle() const { return isWireframe ? DrawStyle::Edges : DrawStyle::Solids; }
    void setWireframe(bool isOn) { isWireframe = isOn; }

private:
    InputDevice& input;
    bool isWireframe = false;
    Switch wireframeKey;
    Switch cullingKey = Switch('c');
    Switch occlusionKey = Switch('o');
    Switch lampKey = Switch('l');
    Switch boxKey = Switch('b');
    Switch filmKey = Switch('f');
    Switch textKey = Switch('h');
};
