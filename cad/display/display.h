// The nine display objects of a document.
#pragma once
#include "cad/display/dis_cts.h"
#include "cad/display/dis_lib_cmp.h"
#include "cad/display/dis_lib_dtm.h"
#include "cad/display/dis_lib_gis.h"
#include "cad/display/dis_lib_gps.h"
#include "cad/display/dis_lib_pnt.h"
#include "cad/display/dis_lib_profile.h"
#include "cad/display/dis_pt_nome.h"
#include "cad/display/dis_road.h"
