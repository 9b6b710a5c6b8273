// The game's colours, written 0x00BBGGRR as its code writes them, in Qt's terms.
#pragma once

#include <QColor>
#include <cstdint>

namespace quillop {

inline QColor colorFromBgr(std::uint32_t bgr) {
    return QColor(static_cast<int>(bgr & 0xFF), static_cast<int>((bgr >> 8) & 0xFF),
                  static_cast<int>((bgr >> 16) & 0xFF));
}

}  // namespace quillop
