"""What went wrong, as one sentence for whoever started the script."""


class DeskFailure(Exception):
    pass
