// The nine display objects of a document.
#pragma once
#include "display/dis_cts.h"
#include "display/dis_lib_cmp.h"
#include "display/dis_lib_dtm.h"
#include "display/dis_lib_gis.h"
#include "display/dis_lib_gps.h"
#include "display/dis_lib_pnt.h"
#include "display/dis_lib_profile.h"
#include "display/dis_pt_nome.h"
#include "display/dis_road.h"
