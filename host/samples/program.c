/* What stands for a client's program on a sample machine: it has the client's icon, and does nothing. */
int Begin(void) __asm__("Begin");

int Begin(void) { return 0; }
