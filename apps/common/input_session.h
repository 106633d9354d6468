#pragma once

#include <cstdint>
#include <fstream>
#include <string>
#include <vector>

union SDL_Event;
struct SDL_Window;

// A session is a text of what a person did, frame by frame, so that a program does it again, always the same:
//
//     # a comment
//     12 key down Left Ctrl
//     12 key down S
//     14 key up S
//     20 text hello
//     30 motion 400 300 5 -2      position, and by how much
//     31 button down 1
//     35 button up 1
//     40 wheel 1
//     50 window 800 600           its new size
//     99 quit
//
// Keys have SDL's names. A text is all that follows one blank. Frames count from 0 and never go back; each takes 1/60
// second. Buttons are 1 (left), 2 (middle), 3 (right), 4 and 5.

constexpr float sessionFrameSeconds = 1.0f / 60.0f;

/// Plays a session by putting its events into the system's queue.
class SessionPlayer {
public:
    /// Throws std::runtime_error, naming the file and the line, for what is no session.
    explicit SessionPlayer(const std::string& fileName);

    /// Before the engine's update of each frame. Events of keys and the mouse are the window's.
    void pushEvents(std::uint64_t frame, SDL_Window* window);

    bool isOver() const { return next == steps.size(); }

    /// Since the last call: programs that hide the cursor get no motion from the system while a session is played.
    void takeMotion(int& outX, int& outY);

private:
    enum class Action : int { KeyDown, KeyUp, Text, Motion, ButtonDown, ButtonUp, Wheel, Window, Quit };

    struct Step {
        std::uint64_t frame = 0;
        Action action = Action::Quit;
        std::string text; ///< the key, or what is typed
        int numbers[4] = {};
    };

    /// How an action is written: its numbers are within the limits.
    struct Form {
        const char* name;
        Action action;
        int numberCount;
        int smallest;
        int largest;
    };
    static const Form forms[];

    void readStep(const std::string& line, const std::string& place);
    static const Form* findForm(const std::string& text);
    static void readNumbers(const Form& form, const std::string& text, const std::string& place, Step& step);
    void push(const Step& step, SDL_Window* window);
    void pushKey(const Step& step, unsigned windowId);
    void pushMotion(const Step& step, unsigned windowId);
    void pushButton(const Step& step, unsigned windowId);

    std::vector<Step> steps;
    std::size_t next = 0;
    int x = 0;
    int y = 0;
    int motionX = 0;
    int motionY = 0;
    unsigned buttons = 0;
    unsigned modifiers = 0;
};

/// Writes down what arrives while it lives.
class SessionRecorder {
public:
    /// Throws std::runtime_error, naming the file, when it cannot be written.
    explicit SessionRecorder(const std::string& fileName);
    ~SessionRecorder();
    SessionRecorder(const SessionRecorder&) = delete;
    SessionRecorder& operator=(const SessionRecorder&) = delete;

    void setFrame(std::uint64_t newFrame) { frame = newFrame; }

    /// The window's size before anything happens: where the mouse is means little without it.
    void writeWindowSize(int width, int height);

private:
    static int watch(void* recorder, SDL_Event* event);
    void write(const SDL_Event& event);

    std::ofstream file;
    std::uint64_t frame = 0;
};
