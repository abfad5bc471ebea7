#pragma once

#include <QMainWindow>

#include <memory>

namespace Ui {
class BatchWindow;
}

/// The window for a whole batch: documents are chosen, checked and printed in three steps.
class BatchWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit BatchWindow(QWidget* parent = nullptr);
    ~BatchWindow() override;

private:
    std::unique_ptr<Ui::BatchWindow> m_ui;
};
