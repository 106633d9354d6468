#pragma once

/// All public headers of xum-engine.

#include <xum/devices/input_device.h>
#include <xum/devices/key_codes.h>
#include <xum/engine/engine.h>
#include <xum/engine/export.h>
#include <xum/engine/game_engine.h>
#include <xum/engine/log.h>
#include <xum/engine/system_device.h>
#include <xum/engine/window.h>
#include <xum/files/data_root.h>
#include <xum/geometry/box.h>
#include <xum/geometry/fixed.h>
#include <xum/geometry/matrix.h>
#include <xum/geometry/plane.h>
#include <xum/geometry/position.h>
#include <xum/geometry/random.h>
#include <xum/geometry/vector.h>
#include <xum/lisp/script_host.h>
#include <xum/lisp/scripting_device.h>
#include <xum/render/image.h>
#include <xum/render/program.h>
#include <xum/render/render_device.h>
#include <xum/render/render_target.h>
#include <xum/render/render_types.h>
#include <xum/render/shader.h>
#include <xum/render/texture.h>
#include <xum/render/vertex_buffer.h>
