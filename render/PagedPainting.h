#pragma once

class QPainter;

/// True if what the painter paints becomes a printed page (a printer or a PDF file).
bool paintsOnPage(const QPainter* painter);
