    const char *name_;
