// Nuklear as this program configures it. Every file that needs Nuklear includes
// this one: the options change its records, so they must be the same everywhere.
#pragma once

// All that nuklear.h includes, for the sake of what follows below.
#include <assert.h>
#include <stdarg.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>

// clang-format off
#define NK_INCLUDE_FIXED_TYPES
#define NK_INCLUDE_STANDARD_IO
#define NK_INCLUDE_STANDARD_VARARGS
#define NK_INCLUDE_DEFAULT_ALLOCATOR
#define NK_INCLUDE_VERTEX_BUFFER_OUTPUT
#define NK_INCLUDE_FONT_BAKING
#define NK_INCLUDE_DEFAULT_FONT
// The backend tells key states once a frame, not key events.
#define NK_KEYSTATE_BASED_INPUT
// A full editor on a large screen has more vertices than 16 bits can count.
#define NK_UINT_DRAW_INDEX
// Bytes typed between two frames: what the backend's 256 characters can need.
#define NK_INPUT_MAX 1024
// The direction chart's label row has 17 columns, one more than the default.
#define NK_MAX_LAYOUT_ROW_TEMPLATE_COLUMNS 32
// The source editor has a history of its own; this one serves the one-line
// fields. It is kept small, as noting a deletion costs its length times the
// text's.
#define NK_TEXTEDIT_UNDOCHARCOUNT 64

// Nuklear's drawing commands hold coordinates as short, and a line of the source
// may be wider than that counts. Where 16 bits are meant, as in font files, it
// says nk_short, which is int16_t.
#if defined(__clang__)
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wkeyword-macro"
#endif
#define short int
#include <nuklear.h>
#undef short
#if defined(__clang__)
#pragma clang diagnostic pop
#endif
// clang-format on
