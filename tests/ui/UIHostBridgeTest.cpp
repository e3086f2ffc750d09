#include <QDockWidget>
#include <QMainWindow>
#include <QPointer>

#include "UIFixture.h"
#include "ui/UIHostBridge.h"
#include "ui/UIWindow.h"

using UIHostBridgeTest = UIFixture;

TEST_F(UIHostBridgeTest, HostDocksAWindowAndTheElementStillOwnsIt)
{
    QMainWindow host;
    auto* dock = new QDockWidget("Track Editor", &host);
    host.addDockWidget(Qt::RightDockWidgetArea, dock);
    auto* window = make<UIWindow>(root(), "Anim - New Track", 400, 300);
    QWidget* widget = UIHostBridge::widgetOf(window);
    ASSERT_NE(widget, nullptr);
    EXPECT_TRUE(widget->isWindow());
    dock->setWidget(widget);
    host.resize(800, 400);
    host.show();
    settle();
    EXPECT_EQ(widget->window(), &host);
    EXPECT_TRUE(widget->isVisible());
    EXPECT_GT(window->getWidth(), 0);
    // Destroying the element takes its widget out of the dock.
    QPointer<QWidget> watched(widget);
    destroy(window);
    settle();
    EXPECT_TRUE(watched.isNull());
    EXPECT_EQ(dock->widget(), nullptr);
}

TEST_F(UIHostBridgeTest, NullElementHasNoWidget)
{
    EXPECT_EQ(UIHostBridge::widgetOf(nullptr), nullptr);
}
