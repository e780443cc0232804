// Nuklear's GLFW/OpenGL 3 backend: the functions, not their implementation.
#pragma once

#include <GL/glew.h>

#include <GLFW/glfw3.h>

#include "ui/nuklear.hpp"

#include <nuklear_glfw_gl3.h>
