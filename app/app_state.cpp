#include "app/app_state.h"

constinit AppState appState;
