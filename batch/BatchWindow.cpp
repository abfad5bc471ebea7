#include "batch/BatchWindow.h"

#include "app/AppStyle.h"
#include "ui_BatchWindow.h"

BatchWindow::BatchWindow(QWidget* parent)
    : QMainWindow(parent)
    , m_ui(std::make_unique<Ui::BatchWindow>())
{
    m_ui->setupUi(this);
    applyBaseStyle(this);
}

BatchWindow::~BatchWindow() = default;
