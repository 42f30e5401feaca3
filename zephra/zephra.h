#pragma once
// Every public header of the library.

#include <zephra/Common/zpCommonTypes.h>
#include <zephra/Common/zpExceptions.h>
#include <zephra/Common/zpNumberText.h>
#include <zephra/Common/zpPlatform.h>
#include <zephra/Common/zpPolyUtils.h>
#include <zephra/Common/zpSpatialConst.h>
#include <zephra/Common/zpVersion.h>
#include <zephra/Export/zplArcInfoGridASCIIExporter.h>
#include <zephra/Export/zplGeoTiffExporter.h>
#include <zephra/Export/zplXYZAsciiExporter.h>
#include <zephra/Export/zplZephraImageExporterIntf.h>
#include <zephra/Export/zplZephraImageSaveCopyExporter.h>
#include <zephra/Palette/zplbPaletteRamp.h>
#include <zephra/Palette/zplbZephraPalFile.h>
#include <zephra/Raster/Header/zpHeaderUtils.h>
#include <zephra/Raster/Header/zplbZephraImageHeader.h>
#include <zephra/Raster/Header/zplnKey.h>
#include <zephra/Raster/Header/zplnUtils.h>
#include <zephra/Raster/Images/zplbRasterOpen.h>
#include <zephra/Raster/Images/zplbSmoothing.h>
#include <zephra/Raster/Images/zplbZephraGeoTiffImage.h>
#include <zephra/Raster/Images/zplbZephraImageTypes.h>
#include <zephra/Raster/Stream/zplbNonBufferedImageTypes.h>
#include <zephra/Vector/zpVectorFile.h>
#include <zephra/Vector/zpVectorFileHeader.h>
