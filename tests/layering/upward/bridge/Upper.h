// A bridge header.
#pragma once
