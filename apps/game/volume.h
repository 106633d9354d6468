#pragma once

#include <algorithm>

/// How loud everything is, as a player sets it.
class Volume {
public:
    static constexpr int step = 10;

    explicit Volume(int percent = 100, bool isMute = false) : percent(percent), isMute(isMute) {}

    /// By percent of the full volume, between none and full. Whoever changes the volume wants to hear something.
    void change(int byPercent)
    {
        percent = std::clamp(percent + byPercent, 0, 100);
        isMute = false;
    }

    void switchMute() { isMute = !isMute; }

    int getPercent() const { return percent; }
    bool isMuted() const { return isMute; }

    /// 0 to 1.
    float get() const { return isMute ? 0.0f : static_cast<float>(percent) / 100.0f; }

private:
    int percent;
    bool isMute;
};
