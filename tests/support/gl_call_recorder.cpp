#include "gl_call_recorder.h"

#include <GL/glew.h>
#include <SDL.h>

#include <dlfcn.h>

#include <cstdint>

// Two ways in. What GLEW loads is a function pointer, which is swapped while something is recorded. What OpenGL and SDL
// export is defined here: the dynamic linker prefers a program's own function to the one of a library.

namespace {

std::vector<std::string>* recording = nullptr; // null while nothing is recorded
bool areContextsRefused = false;

template <class... Arguments>
void record(const char* name, Arguments... arguments)
{
    if (recording != nullptr) recording->push_back(GLCall::describe(name, arguments...));
}

template <auto* pointer, class Function = std::remove_pointer_t<decltype(pointer)>>
struct Hook;

template <auto* pointer, class Result, class... Arguments>
struct Hook<pointer, Result (*)(Arguments...)> {
    static inline Result (*original)(Arguments...) = nullptr;
    static inline const char* name = nullptr;

    static Result call(Arguments... arguments)
    {
        record(name, arguments...);
        return original(arguments...);
    }

    static void install(const char* functionName)
    {
        if (*pointer == nullptr) return; // nothing is loaded yet
        name = functionName;
        original = *pointer;
        *pointer = call;
    }

    static void remove()
    {
        if (*pointer == call) *pointer = original;
    }
};

struct HookOperations {
    const char* name;
    void (*install)(const char* functionName);
    void (*remove)();
};

template <auto* pointer>
constexpr HookOperations hook(const char* name)
{
    return {name, Hook<pointer>::install, Hook<pointer>::remove};
}

const HookOperations hooks[] = {
    hook<&__glewActiveTexture>("glActiveTexture"),
    hook<&__glewAttachShader>("glAttachShader"),
    hook<&__glewBindAttribLocation>("glBindAttribLocation"),
    hook<&__glewBindBuffer>("glBindBuffer"),
    hook<&__glewBindFragDataLocation>("glBindFragDataLocation"),
    hook<&__glewBindFramebuffer>("glBindFramebuffer"),
    hook<&__glewBindVertexArray>("glBindVertexArray"),
    hook<&__glewBlitFramebuffer>("glBlitFramebuffer"),
    hook<&__glewBufferData>("glBufferData"),
    hook<&__glewColorMaski>("glColorMaski"),
    hook<&__glewDeleteBuffers>("glDeleteBuffers"),
    hook<&__glewDeleteVertexArrays>("glDeleteVertexArrays"),
    hook<&__glewDetachShader>("glDetachShader"),
    hook<&__glewDrawBuffers>("glDrawBuffers"),
    hook<&__glewEnableVertexAttribArray>("glEnableVertexAttribArray"),
    hook<&__glewGenBuffers>("glGenBuffers"),
    hook<&__glewGenerateMipmap>("glGenerateMipmap"),
    hook<&__glewGetUniformLocation>("glGetUniformLocation"),
    hook<&__glewLinkProgram>("glLinkProgram"),
    hook<&__glewMapBuffer>("glMapBuffer"),
    hook<&__glewShaderSource>("glShaderSource"),
    hook<&__glewUniform1f>("glUniform1f"),
    hook<&__glewUniform1i>("glUniform1i"),
    hook<&__glewUniform2f>("glUniform2f"),
    hook<&__glewUniform3f>("glUniform3f"),
    hook<&__glewUniform4f>("glUniform4f"),
    hook<&__glewUniformMatrix3fv>("glUniformMatrix3fv"),
    hook<&__glewUniformMatrix4fv>("glUniformMatrix4fv"),
    hook<&__glewUnmapBuffer>("glUnmapBuffer"),
    hook<&__glewUseProgram>("glUseProgram"),
    hook<&__glewVertexAttribPointer>("glVertexAttribPointer"),
};

template <class Function>
Function* next(const char* name)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

} // namespace

std::vector<std::string> GLCall::recordedDuring(const std::function<void()>& act)
{
    std::vector<std::string> calls;
    for (const HookOperations& operations : hooks) operations.install(operations.name);
    recording = &calls;
    act();
    recording = nullptr;
    for (const HookOperations& operations : hooks) operations.remove();
    return calls;
}

std::vector<std::string> GLCall::recordedDuring(const std::function<void()>& act, const std::string& name)
{
    std::vector<std::string> calls = recordedDuring(act);
    std::erase_if(calls, [&](const std::string& call) { return !call.starts_with(name + '('); });
    return calls;
}

void GLCall::refuseContexts(bool refuse)
{
    areContextsRefused = refuse;
}

extern "C" {

void glBindTexture(GLenum target, GLuint texture)
{
    record("glBindTexture", target, texture);
    static const auto original = next<decltype(glBindTexture)>("glBindTexture");
    original(target, texture);
}

void glClear(GLbitfield mask)
{
    record("glClear", mask);
    static const auto original = next<decltype(glClear)>("glClear");
    original(mask);
}

void glDeleteTextures(GLsizei count, const GLuint* names)
{
    record("glDeleteTextures", count, *names);
    static const auto original = next<decltype(glDeleteTextures)>("glDeleteTextures");
    original(count, names);
}

void glDrawArrays(GLenum mode, GLint first, GLsizei count)
{
    record("glDrawArrays", mode, first, count);
    static const auto original = next<decltype(glDrawArrays)>("glDrawArrays");
    original(mode, first, count);
}

void glDrawElements(GLenum mode, GLsizei count, GLenum type, const void* offset)
{
    record("glDrawElements", mode, count, type, reinterpret_cast<std::intptr_t>(offset));
    static const auto original = next<decltype(glDrawElements)>("glDrawElements");
    original(mode, count, type, offset);
}

void glTexImage2D(GLenum target, GLint level, GLint internalFormat, GLsizei width, GLsizei height, GLint border,
                  GLenum format, GLenum type, const void* pixels)
{
    record("glTexImage2D", target, level, internalFormat, width, height, border, format, type, pixels);
    static const auto original = next<decltype(glTexImage2D)>("glTexImage2D");
    original(target, level, internalFormat, width, height, border, format, type, pixels);
}

int SDL_GL_SetAttribute(SDL_GLattr attribute, int value)
{
    record("SDL_GL_SetAttribute", static_cast<int>(attribute), value);
    static const auto original = next<decltype(SDL_GL_SetAttribute)>("SDL_GL_SetAttribute");
    return original(attribute, value);
}

SDL_GLContext SDL_GL_CreateContext(SDL_Window* window)
{
    record("SDL_GL_CreateContext", static_cast<const void*>(window));
    if (areContextsRefused) return nullptr;
    static const auto original = next<decltype(SDL_GL_CreateContext)>("SDL_GL_CreateContext");
    return original(window);
}

void SDL_GL_DeleteContext(SDL_GLContext context)
{
    record("SDL_GL_DeleteContext", static_cast<const void*>(context));
    static const auto original = next<decltype(SDL_GL_DeleteContext)>("SDL_GL_DeleteContext");
    original(context);
}

int SDL_GL_MakeCurrent(SDL_Window* window, SDL_GLContext context)
{
    record("SDL_GL_MakeCurrent", static_cast<const void*>(window), static_cast<const void*>(context));
    static const auto original = next<decltype(SDL_GL_MakeCurrent)>("SDL_GL_MakeCurrent");
    return original(window, context);
}

int SDL_GL_SetSwapInterval(int interval)
{
    record("SDL_GL_SetSwapInterval", interval);
    static const auto original = next<decltype(SDL_GL_SetSwapInterval)>("SDL_GL_SetSwapInterval");
    return original(interval);
}

void SDL_GL_SwapWindow(SDL_Window* window)
{
    record("SDL_GL_SwapWindow", static_cast<const void*>(window));
    static const auto original = next<decltype(SDL_GL_SwapWindow)>("SDL_GL_SwapWindow");
    original(window);
}

} // extern "C"
