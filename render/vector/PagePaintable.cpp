#include "render/vector/PagePaintable.h"

PagePaintable::~PagePaintable() = default;
