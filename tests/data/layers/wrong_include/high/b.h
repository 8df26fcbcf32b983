#pragma once
#include "low/a.h"
