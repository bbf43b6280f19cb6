# The fuzz targets of the probe: the name, then its place in the chain of recognisers.
set(probeFuzzTargets
  whole -1 image 0 riff 1 mp4 2 asf 3 ogg 4 mpegps 5 mpegaudio 6 flac 7 ape 8 flv 9)

# Calls `function(name place)` for every target.
macro(for_each_probe_fuzz_target function)
  set(rest ${probeFuzzTargets})
  while(rest)
    list(POP_FRONT rest name place)
    cmake_language(CALL ${function} ${name} ${place})
  endwhile()
endmacro()
