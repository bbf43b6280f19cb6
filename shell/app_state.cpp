#include "shell/app_state.h"

constinit AppState appState;
