// Keeps the controls in their places while the window grows.
#ifndef NELVA_TOOLS_DICTIONARY_EDITOR_LAYOUT_H
#define NELVA_TOOLS_DICTIONARY_EDITOR_LAYOUT_H

#include <vector>

#include "platform/win32.h"

namespace editor {

class Layout {
public:
    // The window as it is now is the smallest that it will be.
    void start(HWND dialog);
    void resize();
    void limit(MINMAXINFO* limits) const;

private:
    struct Place {
        HWND window;
        RECT rectangle;
        int move_x, move_y, grow_x, grow_y;  // each 0 or 1: whether it follows the window
    };

    HWND dialog_ = nullptr;
    SIZE client_{}, smallest_{};
    std::vector<Place> places_;
};

}  // namespace editor

#endif
