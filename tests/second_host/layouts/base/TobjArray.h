    T *first_;
    unsigned short count_;
