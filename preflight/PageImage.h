#pragma once

#include <QImage>

#include "render/vector/PagedPainting.h"

/// A picture that is painted as a printed page is.
class PageImage : public QImage, public PageSurface
{
public:
    using QImage::QImage;
};
