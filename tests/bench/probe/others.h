// The libraries that the probe is measured against: each opens the file, reads what it wants to
// know and closes it. False when it does not recognise the file.
#pragma once

bool openWithLibavformat(const char* path);
bool openWithMediaInfoLib(const char* path);
bool openWithTagLib(const char* path);
void silenceOthers();
