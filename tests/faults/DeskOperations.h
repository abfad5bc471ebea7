#pragma once

#include <QMap>
#include <QString>

#include <functional>

class MainWindow;
class Player;

/// What a registrar does in the windows, one change each, on the database of DeskDirectory.
using DeskOperation = std::function<void(MainWindow&, Player&)>;

/// Changes two of the organisation's texts and saves them.
void enterOrganisation(MainWindow& window, Player& player, const QString& name,
                       const QString& director);

/// All operations by their names.
const QMap<QString, DeskOperation>& deskOperations();
