#pragma once

class Program;
class RenderDevice;

/// Whether a program was compiled and linked. The engine warns of problems but keeps them to itself, so this draws with
/// the program and looks at the result. The window is bound afterwards.
bool canDraw(RenderDevice& device, Program* program);
