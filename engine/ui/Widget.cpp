#include "ui/Widget.h"

#include <QGuiApplication>
#include <QScreen>

UIRect Widget::MakeCenter(int width, int height)
{
    QRect screen(0, 0, 800, 600);
    if (QScreen* s = QGuiApplication::primaryScreen())
        screen = s->availableGeometry();
    return UIRect{screen.x() + (screen.width() - width) / 2, screen.y() + (screen.height() - height) / 2, width, height};
}
