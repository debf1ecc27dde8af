#include "hosts/indesign/bridge/ApplicationWindow.h"

struct ApplicationWindow::Windows
{
};

ApplicationWindow::ApplicationWindow() = default;
ApplicationWindow::~ApplicationWindow() = default;

void ApplicationWindow::Find(uint16_t /*port*/) {}

void ApplicationWindow::SetResting(bool /*isResting*/) {}
