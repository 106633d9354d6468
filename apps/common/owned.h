#pragma once

#include <xum/engine/engine.h>
#include <xum/render/render_device.h>

#include <memory>

/// Owners of what an engine or a render device made: they hand it back to the matching destroy operation.
template <class Maker, class Made, void (Maker::*destroy)(Made*)>
struct HandBack {
    Maker* maker = nullptr;
    void operator()(Made* made) const { (maker->*destroy)(made); }
};

template <class Maker, class Made, void (Maker::*destroy)(Made*)>
using Owned = std::unique_ptr<Made, HandBack<Maker, Made, destroy>>;

using OwnedWindow = Owned<Engine, Window, &Engine::destroyWindow>;
using OwnedInputDevice = Owned<Engine, InputDevice, &Engine::destroyInputDevice>;
using OwnedRenderDevice = Owned<Engine, RenderDevice, &Engine::destroyRenderDevice>;
using OwnedAudioDevice = Owned<Engine, AudioDevice, &Engine::destroyAudioDevice>;
using OwnedResourceManager = Owned<Engine, ResourceManager, &Engine::destroyResourceManager>;
using OwnedCache = Owned<Engine, Cache, &Engine::destroyCache>;
using OwnedShader = Owned<RenderDevice, Shader, &RenderDevice::destroyShader>;
using OwnedProgram = Owned<RenderDevice, Program, &RenderDevice::destroyProgram>;
using OwnedTarget = Owned<RenderDevice, RenderTarget, &RenderDevice::destroyRenderTarget>;
using OwnedTexture = Owned<RenderDevice, Texture, &RenderDevice::destroyTexture>;
using OwnedBuffer = Owned<RenderDevice, VertexBuffer, &RenderDevice::destroyVertexBuffer>;
