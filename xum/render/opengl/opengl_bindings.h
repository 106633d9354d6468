#pragma once

#include <GL/glew.h>

/// The vertex array object and the array buffer that are bound, remembered process-wide to skip redundant binds.
/// Names are remembered, not objects: a freed object's address is used again by the next one.

void bindVertexArray(GLuint name);
void bindArrayBuffer(GLuint name);

/// Delete through these: deleting what is bound unbinds it, and the name may be given out again.
void deleteVertexArray(GLuint name);
void deleteArrayBuffer(GLuint name);

/// For when another context becomes current: names mean something else there.
void forgetBufferBindings();
