#pragma once
// The buffered raster engine: TAbstractImage, the class references TImageClass and
// TAbstractImageClass, the four binary raster classes TRealImage, TByteImage, TIntegerImage and
// TInteger32Image, the text rasters TAsciiImage and TArcGridImage, TGenericImage and
// TImageFactory, and WriteImageData.

#include <zephra/Raster/Images/zplbSmoothing.h>
#include <zephra/Raster/Images/zplbZephraAbstractImage.h>
#include <zephra/Raster/Images/zplbZephraImageClass.h>
#include <zephra/Raster/Images/zplbZephraImageFactory.h>
#include <zephra/Raster/Images/zplbZephraTextImage.h>
#include <zephra/Raster/Images/zplbZephraTypedImage.h>
