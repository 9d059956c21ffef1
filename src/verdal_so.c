/* libverdal.so is the engine archive linked whole; this unit only gives the target a source. */
typedef int verdal_so_unit;
