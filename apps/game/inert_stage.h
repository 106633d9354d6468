#pragma once

#include "stage.h"

/// An empty world, for rules that are only tried: whatever they do has no effect.
class InertStage final : public Stage {
public:
    std::size_t countPlaces(const std::string& /*className*/) const override { return 0; }
    Vector3<float> getPlace(const std::string& /*className*/, std::size_t /*number*/) const override { return {}; }
    float getTurn(const std::string& /*className*/, std::size_t /*number*/) const override { return 0; }
    int addThing(const std::string& /*kind*/, const Vector3<float>& /*position*/) override { return -1; }
    void moveThing(int /*number*/, const Vector3<float>& /*position*/) override {}
    void removeThing(int /*number*/) override {}
    void clearThings() override {}
    float getThingDistance(int /*number*/) const override { return 0; }
    Vector3<float> getPlayer() const override { return {}; }
    void putPlayer(const Vector3<float>& /*feet*/, float /*turn*/) override {}
    void aimLamp(std::size_t /*number*/, const Vector3<float>& /*from*/, const Vector3<float>& /*towards*/) override {}
    bool doesLampSeePlayer(std::size_t /*number*/) const override { return false; }
    void playSound(const std::string& /*name*/, const Vector3<float>& /*position*/) override {}
    void showText(const std::string& /*slot*/, std::string_view /*text*/) override {}
    void setDusk(float /*part*/) override {}
};
