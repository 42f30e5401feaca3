#pragma once
/// @file
/// The buffered raster engine in one include: TAbstractImage, the class references TImageClass
/// and TAbstractImageClass, the binary rasters TRealImage, TByteImage, TIntegerImage and
/// TInteger32Image, the text rasters TAsciiImage and TArcGridImage, TGenericImage, TImageFactory.

#include <zephra/Raster/Images/zplbSmoothing.h>
#include <zephra/Raster/Images/zplbZephraAbstractImage.h>
#include <zephra/Raster/Images/zplbZephraImageClass.h>
#include <zephra/Raster/Images/zplbZephraImageFactory.h>
#include <zephra/Raster/Images/zplbZephraTextImage.h>
#include <zephra/Raster/Images/zplbZephraTypedImage.h>
