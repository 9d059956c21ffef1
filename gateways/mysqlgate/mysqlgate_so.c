/* libverdal_mysqlgate.so is the gateway's archive linked whole; this unit only gives the target a
   source. */
typedef int verdal_mysqlgate_so_unit;
